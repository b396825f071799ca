// Writing a JPEG file from host rows, with the options, the thumbnail and the kept segments.
#include <cstring>
#include <optional>

#include "exif/segment_builder.h"
#include "frame/error_report.h"
#include "frame/save_options.h"
#include "frame/source_path.h"
#include "host/plugin_entries.h"
#include "jpeg/encoder.h"
#include "jpeg/file_information.h"
#include "jpeg/thumbnail_encoder.h"
#include "jpeg/write_options.h"
#include "platform/global_memory.h"

namespace jpeg {
namespace {

using host::FileDataRecord;
using host::u32;
using host::u64;
using host::u8;

constexpr host::i32 noOutputPosition = 1034;
constexpr host::i32 codecFailedPosition = 1203;
constexpr u32 jpegRecordKind = 5;

// The host's rows: an array of row pointers for each request.
class HostRows final : public RowSupplier {
 public:
  HostRows(void* hostContext, host::RowSource* source) noexcept
      : context_(hostContext), source_(source) {}

  // Null when the host gives none (null or all ones).
  [[nodiscard]] u8** request(u32 first, u32 width, u32 count, u32 second,
                             bool four) const noexcept {
    void* rows = source_(context_, 0, first, width, count, second, four ? -2 : -1, four ? 15 : 7);
    const auto value = reinterpret_cast<std::uintptr_t>(rows);
    return value != ~std::uintptr_t{0} ? static_cast<u8**>(rows) : nullptr;
  }

  u32 supply(const host::RowBlock& row) noexcept override {
    u8** rows = request(row.row, row.width, 1, 1, row.bytesPerPixel == 4);
    if (rows == nullptr || rows[0] == nullptr) return static_cast<u32>(host::codecStopped);
    std::memcpy(row.pixels, rows[0], row.byteCount);
    return host::codecGoOn;
  }

 private:
  void* context_;
  host::RowSource* source_;
};

class KeptSegments final : public SegmentSupplier {
 public:
  explicit KeptSegments(HGLOBAL propertyRecord) noexcept : segments_(propertyRecord) {}
  u32 count() noexcept override { return segments_.count(); }
  std::optional<property::RawSegment> find(u32 number) noexcept override {
    return segments_.find(number);
  }

 private:
  property::RawSegments segments_;
};

// The output file. One that the plug-in opened is closed with this object only when the caller
// passed null: a caller who passed -1 keeps it open, which hosts rely on.
class OutputFile {
 public:
  OutputFile(HANDLE given, HGLOBAL fileData) noexcept : handle_(given) {
    if (given != nullptr && given != INVALID_HANDLE_VALUE) return;
    handle_ = create(frame::sourcePathOf(fileData));
    closes_ = given == nullptr;
  }
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  ~OutputFile() {
    if (closes_ && isOpen()) CloseHandle(handle_);
  }

  [[nodiscard]] bool isOpen() const noexcept { return handle_ != INVALID_HANDLE_VALUE; }
  [[nodiscard]] HANDLE handle() const noexcept { return handle_; }
  void leaveOpen() noexcept { closes_ = false; }

 private:
  static HANDLE create(const frame::SourcePath& path) noexcept {
    constexpr DWORD share = FILE_SHARE_READ;
    if (path.wide != nullptr) {
      return CreateFileW(path.wide, GENERIC_WRITE, share, nullptr, CREATE_ALWAYS,
                         FILE_ATTRIBUTE_NORMAL, nullptr);
    }
    if (path.ansi != nullptr) {
      return CreateFileA(path.ansi, GENERIC_WRITE, share, nullptr, CREATE_ALWAYS,
                         FILE_ATTRIBUTE_NORMAL, nullptr);
    }
    return INVALID_HANDLE_VALUE;
  }

  HANDLE handle_;
  bool closes_ = false;
};

// Kept: the rows are asked for even when a size is unknown (-1), and the answer then ignored.
Thumbnail makeThumbnail(const FileDataRecord& record, const HostRows& rows) noexcept {
  const PreviewGeometry geometry = previewGeometryOf(record);
  if (!previewWanted(geometry)) return {};
  u8** given = rows.request(0, geometry.width, geometry.height, 0, false);
  if (given == nullptr || !previewUsable(geometry)) return {};
  const u64 rowBytes = previewRowBytes(geometry);
  const platform::OwnedGlobal block(platform::fixedZeroed, rowBytes * geometry.height);
  const platform::LockedGlobal lock(block.get());
  if (!lock) return {};
  auto* pixels = static_cast<u8*>(lock.address());
  for (u32 row = 0; row < geometry.height; ++row) {
    if (given[row] == nullptr) return {};
    std::memcpy(pixels + row * rowBytes, given[row], rowBytes);
  }
  return encodeThumbnail(geometry, pixels, thumbnailLimit);
}

u32 contextFlags(HGLOBAL propertyRecord) noexcept {
  const property::PropertyRecord record(propertyRecord);
  u32 flags = 0;
  if (property::findField(propertyRecord, host::fieldHeap, nullptr, nullptr) != 0) {
    flags |= contextHasHeap;
  }
  if (property::countExifFields(record.fields()) + property::countGpsFields(record.fields()) != 0) {
    flags |= contextHasExifOrGps;
  }
  return flags;
}

int encode(const FileDataRecord& record, HANDLE file, void* hostContext, host::RowSource* rowSource,
           const host::WriteOptions& options) noexcept {
  const PictureGeometry geometry = pictureGeometryOf(record);
  const HGLOBAL properties = property::propertyRecordOf(record);
  WriteContext context = {};
  context.size = sizeof context;
  context.file = file;
  context.geometry = &geometry;
  context.hostContext = hostContext;
  context.rowSource = rowSource;
  context.propertyRecord = properties;
  context.flags = contextFlags(properties);
  HostRows rows(hostContext, rowSource);
  KeptSegments segments(properties);
  Encoder encoder(context, rows, segments);
  const host::CodecCallback callback = encoder.callback();
  host::OutputDescriptor output = {};
  output.size = sizeof output;
  output.file = file;
  output.write = &writeOutput;
  return kJpgWrite(&output, &callback, &options);
}

u32 codecColourSpaceOf(u32 colourType) noexcept {
  switch (colourType) {
    case host::colourFourComponents:
      return host::codecFourComponents;
    case host::colourTrue:
      return host::codecColour;
    case host::colourGrey:
      return host::codecGrey;
    default:
      return host::codecOther;
  }
}

// A record of another format gets the tail. False when it cannot be enlarged.
bool makeJpegRecord(HGLOBAL fileData, platform::LockedGlobal& lock) noexcept {
  host::JpegTail* tail = addJpegTail(fileData, lock);
  if (tail == nullptr) return false;
  host::JpegTail fresh = {};
  fresh.tag = tail->tag;
  fresh.size = tail->size;
  fresh.colourSpace = codecColourSpaceOf(lock.as<FileDataRecord>()->colourType);
  *tail = fresh;
  return true;
}

// Kept: after a write the record holds the settings, not the options that were just used.
bool recordWrite(HGLOBAL fileData, platform::LockedGlobal& lock) noexcept {
  auto* record = lock.as<FileDataRecord>();
  record->kind = jpegRecordKind;
  record->count572 = 1;
  record->count576 = 1;
  if (jpegTailOf(lock.address(), lock.size()) == nullptr && !makeJpegRecord(fileData, lock)) {
    return false;
  }
  auto& data = *lock.as<host::JpegFileData>();
  const frame::SaveOptions settings = frame::saveOptions();
  data.tail.mode = settings.mode;
  if (data.record.colourType == host::colourTrue) data.tail.sample = settings.sample;
  data.tail.quality = settings.quality;
  return true;
}

bool isRecord(HGLOBAL fileData) noexcept {
  return platform::LockedGlobal(fileData).as<FileDataRecord>() != nullptr;
}

int writeFile(HANDLE given, HGLOBAL fileData, void* hostContext,
              host::RowSource* rowSource) noexcept {
  if (!isRecord(fileData)) return 0;
  OutputFile file(given, fileData);
  if (!file.isOpen()) {
    frame::reportError(host::errorMemoryOrOutput, frame::jpegErrors, noOutputPosition);
    return 0;
  }
  frame::loadSaveOptions();
  platform::LockedGlobal lock(fileData);
  auto* record = lock.as<FileDataRecord>();
  if (record == nullptr) return 0;
  Thumbnail thumbnail = makeThumbnail(*record, HostRows(hostContext, rowSource));
  const host::WriteOptions options = chooseWriteOptions(jpegTailOf(record, lock.size()));
  exif::ensureSegments(property::propertySlot(*record), thumbnail.bytes());
  const int result = encode(*record, file.handle(), hostContext, rowSource, options);
  if (result == host::codecStopped) return -1;
  if (result != host::codecGoOn) {
    frame::reportError(host::errorWrite, frame::jpegErrors, codecFailedPosition);
    return 0;
  }
  if (recordWrite(fileData, lock)) return 1;
  file.leaveOpen();  // kept, with the thumbnail's bytes: this failure ends the call at once
  thumbnail.abandon();
  return 0;
}

}  // namespace
}  // namespace jpeg

extern "C" int kfJpgFileWrite(HANDLE file, HGLOBAL fileData, void* context,
                              host::RowSource* rowSource) noexcept {
  if (rowSource == nullptr) return 0;
  return jpeg::writeFile(file, fileData, context, rowSource);
}
