// Windows counts for us. Wine's GetGuiResources answers 0, and there the tables are looked through:
// the GDI table that every process maps (its address lies in the process environment block), and
// the USER handles, which are small even numbers below a generation count that may be left out.
#include "tests/windows/support/handle_count.h"

#include <winternl.h>

#include "platform/system.h"

namespace test {
namespace {

struct GdiEntry {
  unsigned long long object;
  unsigned owner;
  unsigned short generation;
  unsigned char type;  // 0 = free
  unsigned char flags;
  unsigned long long userData;
};
static_assert(sizeof(GdiEntry) == 24);

constexpr unsigned gdiEntries = 16384;
constexpr unsigned gdiTableFromPeb = 0xF8;

unsigned countGdiTable() {
  const FARPROC find = GetProcAddress(GetModuleHandleA("ntdll.dll"), "RtlGetCurrentPeb");
  if (find == nullptr) return 0;
  const char* peb = reinterpret_cast<const char* (*)()>(reinterpret_cast<void*>(find))();
  const auto* table = *reinterpret_cast<GdiEntry* const*>(peb + gdiTableFromPeb);
  if (table == nullptr) return 0;
  unsigned count = 0;
  for (unsigned index = 0; index < gdiEntries; ++index) count += table[index].type != 0 ? 1 : 0;
  return count;
}

constexpr unsigned long long firstUserHandle = 0x20;
constexpr unsigned long long lastUserHandle = 0xFFEE;

bool isOwnWindow(HWND window) {
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  return process == GetCurrentProcessId();
}

// A cursor is an icon too.
bool isIcon(HICON icon) {
  ICONINFO info = {};
  if (GetIconInfo(icon, &info) == FALSE) return false;
  DeleteObject(info.hbmMask);
  if (info.hbmColor != nullptr) DeleteObject(info.hbmColor);
  return true;
}

unsigned countUserHandles() {
  unsigned count = 0;
  for (unsigned long long handle = firstUserHandle; handle <= lastUserHandle; handle += 2) {
    const bool used = isOwnWindow(reinterpret_cast<HWND>(handle)) ||
                      IsMenu(reinterpret_cast<HMENU>(handle)) != FALSE ||
                      isIcon(reinterpret_cast<HICON>(handle));
    count += used ? 1 : 0;
  }
  return count;
}

}  // namespace

HandleCount countHandles() {
  HandleCount count = {GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS),
                       GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS)};
  if (count.gdi == 0) count.gdi = countGdiTable();
  if (count.user == 0) count.user = countUserHandles();
  return count;
}

}  // namespace test
