#include "fiohost/view/window/screen.h"

namespace fiohost::view {
namespace {

MONITORINFO monitorInfo(HMONITOR monitor) {
  MONITORINFO info = {};
  info.cbSize = sizeof info;
  GetMonitorInfoW(monitor, &info);
  return info;
}

int systemDpi() {
  const platform::WindowContext screen(nullptr);
  return GetDeviceCaps(screen.get(), LOGPIXELSY);
}

}  // namespace

int dpiOf(HWND window) {
  // Windows 10 and later.
  using GetDpi = UINT WINAPI(HWND);
  static auto* const getDpi = reinterpret_cast<GetDpi*>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"user32.dll"), "GetDpiForWindow")));
  const UINT dpi = getDpi != nullptr ? getDpi(window) : 0;
  return dpi != 0 ? static_cast<int>(dpi) : systemDpi();
}

OwnedFont messageFont(int dpi) {
  NONCLIENTMETRICSW metrics = {};
  metrics.cbSize = sizeof metrics;
  SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
  metrics.lfMessageFont.lfHeight = MulDiv(metrics.lfMessageFont.lfHeight, dpi, systemDpi());
  return OwnedFont(CreateFontIndirectW(&metrics.lfMessageFont));
}

Extent screenSizeOf(HWND window) {
  return boxOf(monitorInfo(MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST)).rcMonitor).extent();
}

Box workAreaNear(const Box& box) {
  const RECT rect = rectOf(box);
  return boxOf(monitorInfo(MonitorFromRect(&rect, MONITOR_DEFAULTTONEAREST)).rcWork);
}

}  // namespace fiohost::view
