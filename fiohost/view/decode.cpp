#include "fiohost/view/decode.h"

#include <algorithm>

#include "fiohost/describe.h"
#include "fiohost/failure.h"
#include "fiohost/mpo_list.h"
#include "fiohost/properties.h"
#include "fiohost/read_picture.h"

namespace fiohost::view {
namespace {

constexpr unsigned orientationTag = 0x0112;  // TIFF 6.0, section 8

Extent extentOf(host::u32 width, host::u32 height) {
  return {static_cast<int>(width), static_cast<int>(height)};
}

// Loads the metadata into the record.
Orientation orientationOf(const Session& session, const Described& described) {
  session.plugin.loadProperties(described.fileData.handle());
  for (const Property& property : readProperties(session, described.fileData)) {
    const bool tiff =
        property.group == PropertyGroup::image || property.group == PropertyGroup::exif;
    if (!tiff || property.tag != orientationTag || property.value.empty()) continue;
    return Orientation(property.value.front());
  }
  return Orientation();
}

// The MP type code's class and sub-code of a disparity image (CIPA DC-007, 5.2.3.3.1).
bool isDisparity(const host::MpoEntry& entry) {
  constexpr host::u32 multiViewClass = 2;
  constexpr host::u32 disparitySubCode = 2;
  return entry.typeClass == multiViewClass && entry.typeSubCode == disparitySubCode;
}

void takeImages(const std::vector<ListedImage>& images, FileFacts& facts) {
  std::vector<Viewpoint> viewpoints;
  facts.images.clear();
  for (const ListedImage& image : images) {
    facts.images.push_back(extentOf(image.entry.image.width, image.entry.image.height));
    viewpoints.push_back({isDisparity(image.entry), image.entry.imageNumber});
  }
  facts.stereo = findStereoPair(viewpoints);
}

class CanvasWriter : public RowWriter {
 public:
  CanvasWriter(Canvas& canvas, const PictureShape& shape, StopFlag stop)
      : canvas_(canvas), channels_(shape.channels), stop_(std::move(stop)) {
    canvas.beginPass(extentOf(shape.width, shape.height));
  }

  void writeRow(const host::u8* row) override {
    if (*stop_) throw Failure("stopped", "");
    canvas_.putRow(next_++, row, channels_);
  }

 private:
  Canvas& canvas_;
  unsigned channels_;
  StopFlag stop_;
  int next_ = 0;
};

}  // namespace

std::optional<StereoPair> findStereoPair(const std::vector<Viewpoint>& images) {
  std::vector<std::size_t> found;
  for (std::size_t i = 0; i < images.size() && found.size() < 2; ++i) {
    if (images[i].disparity) found.push_back(i);
  }
  if (found.size() < 2) return std::nullopt;
  const int first = images[found[0]].imageNumber;
  const int second = images[found[1]].imageNumber;
  if (second >= 0 && second < first) return StereoPair{found[1], found[0]};
  return StereoPair{found[0], found[1]};
}

FileFacts gatherFacts(const Session& session, const std::string& name) {
  const SourceFile file(name);
  const Described described = describeFile(session, file);
  const host::FileDataRecord record = described.fileData.common();
  FileFacts facts;
  facts.name = name;
  facts.images = {extentOf(record.width, record.height)};
  facts.note = described.note;
  facts.orientation = orientationOf(session, described);
  facts.isMultiPicture = described.family == Family::mpo;
  if (facts.isMultiPicture) takeImages(describeMpo(session, file).images, facts);
  return facts;
}

ImageFile::ImageFile(const Session& session, const std::string& name, bool isMultiPicture,
                     std::size_t image)
    : name_(name) {
  if (isMultiPicture) {
    image_.emplace(session, SourceFile(name), static_cast<host::u32>(image + 1));
  }
}

SourceFile ImageFile::source() const { return image_ ? image_->source() : SourceFile(name_); }

void decodeInto(Canvas& canvas, const Session& session, const SourceFile& file,
                const std::optional<Size>& box, const StopFlag& stop) {
  const Orientation orientation = orientationOf(session, describeFile(session, file));
  Described described = describeFile(session, file);
  const host::FileDataRecord record = described.fileData.common();
  canvas.announce(extentOf(record.width, record.height), orientation);
  ReadOptions options;
  options.box = box;
  deliverPicture(session, file, described, options, [&](const PictureShape& shape) {
    return std::make_unique<CanvasWriter>(canvas, shape, stop);
  });
}

}  // namespace fiohost::view
