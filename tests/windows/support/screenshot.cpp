#include "tests/windows/support/screenshot.h"

#include <spng.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <set>

namespace test {
namespace {

struct ReleaseMemoryDc {
  void operator()(HDC dc) const { DeleteDC(dc); }
};
using MemoryDc = std::unique_ptr<std::remove_pointer_t<HDC>, ReleaseMemoryDc>;

class WindowDc {
 public:
  explicit WindowDc(HWND window) : window_(window), dc_(GetWindowDC(window)) {}
  WindowDc(const WindowDc&) = delete;
  WindowDc& operator=(const WindowDc&) = delete;
  ~WindowDc() { ReleaseDC(window_, dc_); }
  [[nodiscard]] HDC get() const { return dc_; }

 private:
  HWND window_;
  HDC dc_;
};

// Four bytes a pixel, blue first, rows from the top.
class Bitmap {
 public:
  Bitmap(int width, int height) {
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = -height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    handle_ = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits_, nullptr, 0);
  }
  Bitmap(const Bitmap&) = delete;
  Bitmap& operator=(const Bitmap&) = delete;
  ~Bitmap() { DeleteObject(handle_); }
  [[nodiscard]] HBITMAP get() const { return handle_; }
  [[nodiscard]] const unsigned char* bits() const { return static_cast<unsigned char*>(bits_); }

 private:
  HBITMAP handle_ = nullptr;
  void* bits_ = nullptr;
};

std::vector<unsigned char> withoutSpareBytes(const unsigned char* bits, std::size_t pixels) {
  std::vector<unsigned char> bytes;
  bytes.reserve(pixels * 3);
  for (std::size_t pixel = 0; pixel < pixels; ++pixel, bits += 4) {
    bytes.insert(bytes.end(), {bits[2], bits[1], bits[0]});
  }
  return bytes;
}

void writePng(const Picture& picture, const std::filesystem::path& path) {
  const std::unique_ptr<FILE, int (*)(FILE*)> file(std::fopen(path.string().c_str(), "wb"),
                                                   &std::fclose);
  ASSERT_NE(file, nullptr) << path;
  const std::unique_ptr<spng_ctx, void (*)(spng_ctx*)> context(spng_ctx_new(SPNG_CTX_ENCODER),
                                                               &spng_ctx_free);
  spng_ihdr header = {};
  header.width = static_cast<unsigned>(picture.width);
  header.height = static_cast<unsigned>(picture.height);
  header.bit_depth = 8;
  header.color_type = SPNG_COLOR_TYPE_TRUECOLOR;
  spng_set_png_file(context.get(), file.get());
  spng_set_ihdr(context.get(), &header);
  EXPECT_EQ(spng_encode_image(context.get(), picture.pixels.data(), picture.pixels.size(),
                              SPNG_FMT_PNG, SPNG_ENCODE_FINALIZE),
            0)
      << path;
}

std::size_t countColours(const Picture& picture) {
  std::set<unsigned> colours;
  for (std::size_t at = 0; at + 2 < picture.pixels.size(); at += 3) {
    const unsigned char* pixel = &picture.pixels[at];
    colours.insert(pixel[0] * 65536U + pixel[1] * 256U + pixel[2]);
  }
  return colours.size();
}

}  // namespace

Picture pictureOf(const Window& window) {
  RedrawWindow(window.handle(), nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
  window.settle();
  const RECT area = window.rectangle();
  Picture picture = {
      static_cast<int>(area.right - area.left), static_cast<int>(area.bottom - area.top), {}};
  const WindowDc source(window.handle());
  const MemoryDc target(CreateCompatibleDC(source.get()));
  const Bitmap bitmap(picture.width, picture.height);
  const HGDIOBJ previous = SelectObject(target.get(), bitmap.get());
  BitBlt(target.get(), 0, 0, picture.width, picture.height, source.get(), 0, 0, SRCCOPY);
  GdiFlush();
  const auto pixels =
      static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height);
  picture.pixels = withoutSpareBytes(bitmap.bits(), pixels);
  SelectObject(target.get(), previous);
  return picture;
}

std::size_t saveScreenshot(const Window& window, const std::string& name) {
  const Picture picture = pictureOf(window);
  const std::filesystem::path folder = KF_SCREENSHOTS;
  std::filesystem::create_directories(folder);
  writePng(picture, folder / (name + ".png"));
  return countColours(picture);
}

}  // namespace test
