#include "fiohost/view/window/painter.h"

#include "platform/wide_text.h"

namespace fiohost::view {
namespace {

constexpr COLORREF backgroundColour = RGB(38, 38, 38);
constexpr COLORREF stripColour = RGB(24, 24, 24);
constexpr COLORREF selectedColour = RGB(70, 110, 160);
constexpr COLORREF textColour = RGB(210, 210, 210);

struct DeleteContext {
  void operator()(HDC context) const noexcept { DeleteDC(context); }
};
using OwnedContext = std::unique_ptr<std::remove_pointer_t<HDC>, DeleteContext>;

// A bitmap of the target's size, which goes to the target when all is drawn.
class BackBuffer {
 public:
  BackBuffer(HDC target, const Extent& size)
      : target_(target),
        size_(size),
        context_(CreateCompatibleDC(target)),
        bitmap_(CreateCompatibleBitmap(target, size.width, size.height)),
        previous_(SelectObject(context_.get(), bitmap_.get())) {}
  BackBuffer(const BackBuffer&) = delete;
  BackBuffer& operator=(const BackBuffer&) = delete;
  ~BackBuffer() { SelectObject(context_.get(), previous_); }

  [[nodiscard]] HDC get() const noexcept { return context_.get(); }
  void show() const {
    BitBlt(target_, 0, 0, size_.width, size_.height, context_.get(), 0, 0, SRCCOPY);
  }

 private:
  HDC target_;
  Extent size_;
  OwnedContext context_;
  platform::OwnedBitmap bitmap_;
  HGDIOBJ previous_;
};

// Drawing goes no further than a box for as long as this lives.
class Clip {
 public:
  Clip(HDC context, const Box& box) : context_(context), saved_(SaveDC(context)) {
    IntersectClipRect(context, box.left, box.top, box.left + box.width, box.top + box.height);
  }
  Clip(const Clip&) = delete;
  Clip& operator=(const Clip&) = delete;
  ~Clip() { RestoreDC(context_, saved_); }

 private:
  HDC context_;
  int saved_;
};

void fill(HDC context, const Box& box, COLORREF colour) {
  const RECT rect = rectOf(box);
  const platform::OwnedBrush brush(CreateSolidBrush(colour));
  FillRect(context, &rect, brush.get());
}

void drawText(HDC context, const Scene& scene, const std::string& text, const Box& box,
              UINT format) {
  const std::wstring wide = platform::wideText(text);
  RECT rect = rectOf(box);
  const HGDIOBJ previous = SelectObject(context, scene.font);
  SetBkMode(context, TRANSPARENT);
  SetTextColor(context, textColour);
  DrawTextW(context, wide.c_str(), static_cast<int>(wide.size()), &rect, format | DT_NOPREFIX);
  SelectObject(context, previous);
}

// A part of a raster. Reducing averages; pixels that are enlarged stay sharp squares.
void drawRaster(HDC context, const Raster& raster, const VisiblePart& part) {
  BITMAPINFO info = {};
  info.bmiHeader.biSize = sizeof info.bmiHeader;
  info.bmiHeader.biWidth = raster.size.width;
  info.bmiHeader.biHeight = -part.source.height;  // rows from the top
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  const bool reduces = part.target.width < part.source.width;
  SetStretchBltMode(context, reduces ? HALFTONE : COLORONCOLOR);
  SetBrushOrgEx(context, 0, 0, nullptr);
  StretchDIBits(context, part.target.left, part.target.top, part.target.width, part.target.height,
                part.source.left, 0, part.source.width, part.source.height,
                raster.row(part.source.top), &info, DIB_RGB_COLORS, SRCCOPY);
}

void paintPicture(HDC context, const Scene& scene) {
  fill(context, scene.layout.picture, backgroundColour);
  bool drawn = false;
  const Clip clip(context, scene.layout.picture);
  scene.document.withPicture([&](const Raster& raster) {
    const VisiblePart part = visiblePart(scene.view, raster.size);
    if (part.source.extent().empty()) return;
    drawRaster(context, raster, part);
    drawn = true;
  });
  if (!drawn) {
    const int margin = scaledLength(24, scene.dpi);
    const Box& all = scene.layout.picture;
    const Box inner = {all.left + margin, all.top + all.height / 2 - margin, all.width - 2 * margin,
                       all.height / 2 + margin};
    drawText(context, scene, scene.message, inner, DT_CENTER | DT_WORDBREAK);
  }
}

bool isShown(const Document& document, std::size_t image) {
  if (document.shownStereo() == StereoMode::off) return image == document.selected();
  const StereoPair& pair = *document.facts()->stereo;
  return image == pair.left || image == pair.right;
}

void paintCell(HDC context, const Scene& scene, const FilmStrip& strip, int index) {
  const auto image = static_cast<std::size_t>(index);
  if (isShown(scene.document, image)) fill(context, strip.cell(index), selectedColour);
  scene.document.withThumbnail(image, [&](const Raster& raster) {
    const Box target = centredIn(strip.thumbnail(index), raster.size);
    if (target.extent().empty()) return;
    drawRaster(context, raster, {{0, 0, raster.size.width, raster.size.height}, target});
  });
  drawText(context, scene, std::to_string(index + 1), strip.thumbnail(index),
           DT_LEFT | DT_BOTTOM | DT_SINGLELINE);
}

void paintStrip(HDC context, const Scene& scene) {
  if (scene.layout.strip.extent().empty()) return;
  fill(context, scene.layout.strip, stripColour);
  const Clip clip(context, scene.layout.strip);
  const int count = static_cast<int>(scene.document.imageCount());
  const FilmStrip strip(scene.layout.strip, count, static_cast<int>(scene.document.selected()),
                        scene.dpi);
  for (int index = 0; index < count; ++index) paintCell(context, scene, strip, index);
}

}  // namespace

void paintScene(HDC target, const Scene& scene) {
  const Extent size = {scene.layout.picture.width,
                       scene.layout.picture.height + scene.layout.strip.height};
  if (size.empty()) return;
  const BackBuffer buffer(target, size);
  paintPicture(buffer.get(), scene);
  paintStrip(buffer.get(), scene);
  buffer.show();
}

}  // namespace fiohost::view
