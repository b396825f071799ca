#include "fiohost/file_data.h"

#include <cstring>

#include "fiohost/failure.h"
#include "platform/console/console.h"

namespace fiohost {
namespace {

// Any value but previewIsImage says that the preview fields describe a picture of their own.
constexpr host::i32 previewIsThumbnail = 2048;

// The record under a lock for as long as this lives.
class Locked {
 public:
  explicit Locked(HGLOBAL handle) : lock_(handle), record_(lock_.as<host::FileDataRecord>()) {
    if (record_ == nullptr) {
      throw Failure("the plug-in's description of the file is too short",
                    "the plug-in and fiohost do not belong together");
    }
  }
  host::FileDataRecord* operator->() const noexcept { return record_; }
  host::FileDataRecord& operator*() const noexcept { return *record_; }
  [[nodiscard]] const host::MpoFileData* asMpo() const noexcept {
    const auto* whole = lock_.as<host::MpoFileData>();
    return whole != nullptr && whole->tag == host::mpoTailTag ? whole : nullptr;
  }
  [[nodiscard]] host::JpegFileData* asJpeg() const noexcept {
    auto* whole = lock_.as<host::JpegFileData>();
    return whole != nullptr && whole->tail.tag == host::jpegTailTag ? whole : nullptr;
  }

 private:
  platform::LockedGlobal lock_;
  host::FileDataRecord* record_;
};

}  // namespace

FileData::FileData(platform::OwnedGlobal record, const FileUtilities& utilities)
    : record_(std::move(record)), utilities_(&utilities) {
  const Locked checked(record_.get());
}

FileData::~FileData() {
  HGLOBAL property = nullptr;
  {
    const platform::LockedGlobal lock(record_.get());
    if (const auto* record = lock.as<host::FileDataRecord>()) {
      property = reinterpret_cast<HGLOBAL>(record->propertyRecord);
    }
  }
  if (property != nullptr) utilities_->freeProperty(property);
}

host::FileDataRecord FileData::common() const { return *Locked(record_.get()); }

host::JpegTail FileData::jpegTail() const {
  const Locked record(record_.get());
  const host::JpegFileData* whole = record.asJpeg();
  return whole != nullptr ? whole->tail : host::JpegTail{};
}

std::unique_ptr<const host::MpoFileData> FileData::mpo() const {
  const Locked record(record_.get());
  const host::MpoFileData* whole = record.asMpo();
  return whole != nullptr ? std::make_unique<const host::MpoFileData>(*whole) : nullptr;
}

void FileData::setSourcePath(const std::filesystem::path& path) {
  widePath_ = std::make_unique<const std::wstring>(platform::widePath(path));
  const Locked record(record_.get());
  const std::optional<std::string> ansi = platform::ansiPath(path);
  record->ansiPath[0] = '\0';
  if (ansi && ansi->size() < sizeof record->ansiPath) {
    std::memcpy(record->ansiPath, ansi->c_str(), ansi->size() + 1);
  }
  record->pathFlags = static_cast<host::u16>(record->pathFlags | host::pathFlagWide);
  record->widePath = reinterpret_cast<host::u64>(widePath_->c_str());
}

void FileData::setSaveOptions(const SaveOptions& options) {
  Locked record(record_.get());
  host::JpegFileData* whole = record.asJpeg();
  if (whole == nullptr) return;
  whole->tail.quality = options.quality;
  whole->tail.mode = options.mode;
  whole->tail.sample = options.sample;
  whole->tail.jfif = options.jfif;
}

void FileData::setPreview(const Preview& preview) {
  const Locked record(record_.get());
  record->previewMarker = previewIsThumbnail;
  record->previewBitsPerPixel = preview.bitsPerPixel;
  record->previewWidth = static_cast<host::i32>(preview.width);
  record->previewHeight = static_cast<host::i32>(preview.height);
  record->previewHorizontalResolution = preview.horizontalResolution;
  record->previewVerticalResolution = preview.verticalResolution;
  record->previewColourType = preview.bitsPerPixel == 8 ? host::colourGrey : host::colourTrue;
}

bool FileData::addField(const host::PropertyField& field) {
  const Locked record(record_.get());
  auto property = reinterpret_cast<HGLOBAL>(host::u64{record->propertyRecord});
  const bool reserved = utilities_->reserveFields(&property, 1) != 0;
  record->propertyRecord = reinterpret_cast<host::u64>(property);
  return reserved && utilities_->appendField(property, &field) != 0;
}

}  // namespace fiohost
