#include "mpo/image_read.h"

#include <cstring>
#include <utility>

#include "jpeg/read_request.h"
#include "mpo/image_input.h"
#include "mpo/mpo_errors.h"
#include "mpo/segment_intake.h"
#include "platform/working_directory.h"
#include "property/metadata_scan.h"

namespace mpo {
namespace {

using host::u32;
using host::u64;

constexpr property::CaptureRules imageRules{.joinExtendedXmp = false, .keepRawBesideField = false};
constexpr u32 headerAnnounced = 2;
constexpr u32 bitsPerSample = 8;
constexpr u32 rowMode = 7;
constexpr u32 refused = 0;  // an answer that makes the codec fail

// A list may name the same bytes for every image, so that a small file asks for all of them over
// and over. What the images of one read come to is held against the file's size, from a size on
// that only large files have. A single image is left to the codec.
class PixelBudget {
 public:
  [[nodiscard]] bool spend(u64 pixels, const ImageInput& input) noexcept {
    spent_ += pixels;
    if (++images_ == 1 || spent_ <= freePixels) return true;
    return spent_ / mostPixelsOfAByte <= input.fileSize().value_or(spent_);
  }

 private:
  static constexpr u64 freePixels = u64{1} << 28;
  // A block of 64 samples takes one bit at least (T.81, F.1.2).
  static constexpr u64 mostPixelsOfAByte = u64{64} * 8;

  u64 spent_ = 0;
  u32 images_ = 0;
};

// One image on its way to the host's callback.
class ImageDelivery {
 public:
  ImageDelivery(HGLOBAL fileData, host::MPORequestCallback* hostCallback, void* context,
                u32 position, const ImageInput& input, PixelBudget& budget,
                SegmentIntake& intake) noexcept
      : fileData_(fileData),
        hostCallback_(hostCallback),
        hostContext_(context),
        position_(position),
        input_(input),
        budget_(budget),
        intake_(intake) {}

  [[nodiscard]] host::CodecCallback callback() noexcept { return {this, &onEvent}; }

 private:
  static u32 onEvent(void* context, u32 event, u64, void* block) noexcept {
    auto& self = *static_cast<ImageDelivery*>(context);
    if (block == nullptr) return host::codecGoOn;
    switch (event) {
      case host::eventHeader:
        return self.announce(*static_cast<const host::ImageHeader*>(block));
      case host::eventRow:
        return self.deliver(*static_cast<const host::RowBlock*>(block));
      case host::eventSegment:
        return self.intake_.take(*static_cast<const host::SegmentRecord*>(block));
      default:
        return host::codecGoOn;
    }
  }

  u32 announce(const host::ImageHeader& header) noexcept {
    if (!budget_.spend(u64{header.width} * header.height, input_)) return refused;
    host::ImageRequest request = {};
    request.size = sizeof request;
    request.imageNumber = position_ + 1;
    request.type = headerAnnounced;
    request.width = header.width;
    request.height = header.height;
    return ask(host::requestHeader, &request);
  }

  u32 deliver(const host::RowBlock& row) noexcept {
    host::RowRequest request = {};
    request.size = sizeof request;
    request.width = row.width;
    request.height = row.imageHeight;
    request.firstRow = row.row;
    request.rowCount = 1;
    request.samples = bitsPerSample;
    request.rowDistance = row.byteCount;
    request.rows = reinterpret_cast<u64>(row.pixels);
    request.mode = rowMode;
    return ask(host::requestRows, &request);
  }

  u32 ask(host::MpoRequest action, void* record) noexcept {
    return static_cast<u32>(hostCallback_(action, record, hostContext_, fileData_));
  }

  HGLOBAL fileData_;
  host::MPORequestCallback* hostCallback_;
  void* hostContext_;
  u32 position_;
  const ImageInput& input_;
  PixelBudget& budget_;
  SegmentIntake& intake_;
};

// The image list as it was, for a read that fails half-way.
class KeptIndex {
 public:
  explicit KeptIndex(std::optional<MpoIndex> index) noexcept : index_(std::move(index)) {
    if (!index_) return;
    copy_ = platform::OwnedGlobal(platform::fixedZeroed, sizeof(Content));
    if (Content* content = contentOf(copy_)) {
      content->list = index_->list;
      std::memcpy(content->entries, index_->entries.data(), sizeof content->entries);
    }
  }

  // False when the copy could not be made.
  [[nodiscard]] bool kept() const noexcept { return !index_ || copy_; }

  void restore() noexcept {
    const Content* content = contentOf(copy_);
    if (!index_ || content == nullptr) return;
    index_->list = content->list;
    std::memcpy(index_->entries.data(), content->entries, sizeof content->entries);
  }

 private:
  struct Content {
    host::MpoList list;
    host::MpoEntry entries[host::mpoMostImages];
  };
  static Content* contentOf(const platform::OwnedGlobal& block) noexcept {
    return static_cast<Content*>(block.get());
  }

  std::optional<MpoIndex> index_;
  platform::OwnedGlobal copy_;
};

int decodeImage(HGLOBAL fileData, host::MPORequestCallback* callback, void* context, u32 position,
                PixelBudget& budget) noexcept {
  const platform::TemporaryWorkingDirectory temporary;
  const MpoRecord record(fileData);
  ImageInput input(nullptr, nullptr, fileData);
  if (!input) return 0;
  KeptIndex before(record.index());
  if (!before.kept()) {
    report(readMemory);
    return 0;
  }
  property::SegmentCapture capture(record.address(), record.size(), imageRules);
  SegmentIntake intake(record.index(), &capture);
  intake.beginImage(position, record.imageStart(position));
  ImageDelivery delivery(fileData, callback, context, position, input, budget, intake);
  const int codecResult = input.run(record, position, delivery.callback());
  const int result = jpeg::resultOfRead(codecResult, capture, readCodec.source, readCodec.position);
  if (result != 1) before.restore();
  return result;
}

int readImage(HGLOBAL fileData, host::MPORequestCallback* callback, void* context, u32 position,
              PixelBudget& budget) noexcept {
  const int result = decodeImage(fileData, callback, context, position, budget);
  // The image counts even when its metadata cannot be taken in.
  if (result == 1) static_cast<void>(property::scanMappedFile(fileData, nullptr, position));
  return result;
}

}  // namespace

int readImages(HGLOBAL fileData, host::MPORequestCallback* callback, void* context,
               int index) noexcept {
  PixelBudget budget;
  bool listed = false;
  u32 count = 0;
  {
    const MpoRecord record(fileData);
    if (record.common() == nullptr) return 0;
    listed = record.list() != nullptr;
    count = record.imageCount();
  }
  if (!listed) return readImage(fileData, callback, context, 0, budget);
  if (index != everyImage) {
    const bool exists = index >= 1 && static_cast<u32>(index) <= count;
    return exists ? readImage(fileData, callback, context, static_cast<u32>(index) - 1, budget) : 0;
  }
  // The count as the record was described: an image's own segment may claim another.
  for (u32 position = 0; position < count; ++position) {
    const int result = readImage(fileData, callback, context, position, budget);
    if (result != 1) return result;
  }
  return 1;
}

}  // namespace mpo
