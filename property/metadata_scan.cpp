#include "property/metadata_scan.h"

#include <algorithm>
#include <cstring>
#include <optional>

#include "exif/iptc_resources.h"
#include "exif/walker.h"
#include "frame/module.h"
#include "frame/source_path.h"
#include "property/heap_expansion.h"
#include "property/mapped_file.h"
#include "property/memory_stream.h"
#include "property/property_record.h"

namespace property {
namespace {

using host::i64;
using host::u16;
using host::u32;
using host::u64;
using host::u8;
using Bytes = std::span<const u8>;

constexpr u32 photoshopHeader = 14;  // "Photoshop 3.0" with its NUL

// The MPO entry of an image; null when the record does not list it.
const host::MpoEntry* findEntry(const void* record, std::size_t size, u32 index) noexcept {
  const auto* data = static_cast<const host::MpoFileData*>(record);
  if (size < offsetof(host::MpoFileData, entries) || data->tag != host::mpoTailTag) return nullptr;
  if (data->list.entries == 0 || index >= data->list.imageCount) return nullptr;
  const std::size_t room = size - offsetof(host::MpoFileData, entries);
  const std::size_t listed =
      std::min<std::size_t>(room / sizeof(host::MpoEntry), host::mpoMostImages);
  return index < listed ? data->entries + index : nullptr;
}

u64 imageStart(const void* record, std::size_t size, u32 index) noexcept {
  const host::MpoEntry* entry = findEntry(record, size, index);
  return entry != nullptr ? entry->fileOffset : 0;
}

// From a place in the image to the end of the file; empty when it lies outside.
Bytes fromPlace(Bytes image, u64 offset) noexcept {
  return offset < image.size() ? image.subspan(static_cast<std::size_t>(offset)) : Bytes{};
}

void readExif(Bytes image, const SegmentPlace& place, HGLOBAL* slot) noexcept {
  if (place.present == 0) return;
  exif::walkExif(fromPlace(image, place.offset), place.length, slot);
}

void readHeap(Bytes image, const SegmentPlace& place, HGLOBAL* slot) noexcept {
  if (place.present == 0) return;
  expandHeap(frame::resourceLibrary(), fromPlace(image, place.offset),
             static_cast<u16>(place.length), slot);
}

void readIptc(Bytes image, const SegmentPlace& place, HGLOBAL* slot) noexcept {
  if (place.present == 0) return;
  const Bytes resources = fromPlace(image, u64{place.offset} + photoshopHeader);
  const i64 budget = i64{place.length} - photoshopHeader;
  const u64 size = std::min<u64>(resources.size(), static_cast<u64>(std::max<i64>(budget, 0)));
  MemoryStream stream{size, const_cast<u8*>(resources.data()), 0};
  exif::walkResources({&stream, &memoryStreamCallback}, budget, slot);
}

void readNotedSegments(Bytes image, const SegmentMap& map, HGLOBAL* slot) noexcept {
  const SegmentMapLayout& layout = map.layout();
  readExif(image, map.place(layout.exif), slot);
  readHeap(image, map.place(layout.heap), slot);
  readIptc(image, map.place(layout.iptc), slot);
}

// The wide path, the ANSI path, or the file name that the record itself holds.
class SourceFile {
 public:
  SourceFile(const frame::SourcePath& path, const host::FileDataRecord& record) noexcept {
    if (path.wide != nullptr) {
      file_.emplace(path.wide);
    } else if (path.ansi != nullptr) {
      file_.emplace(path.ansi);
    } else if (std::memchr(record.ansiPath, '\0', sizeof record.ansiPath) != nullptr) {
      file_.emplace(record.ansiPath);
    }
  }
  [[nodiscard]] std::optional<Bytes> bytes() const noexcept {
    return file_ && *file_ ? std::optional(file_->bytes()) : std::nullopt;
  }

 private:
  std::optional<MappedFile> file_;
};

void markComplete(HGLOBAL propertyRecord) noexcept {
  const PropertyRecord record(propertyRecord);
  const std::span<host::PropertyField> fields = record.fields();
  if (!fields.empty() && fields[0].fieldId == host::fieldHeader) fields[0].scanComplete = 1;
}

int answer(HGLOBAL propertyRecord, HGLOBAL* out) noexcept {
  if (out == nullptr) return 1;
  *out = propertyRecord;
  return propertyRecord != nullptr ? 1 : 0;
}

}  // namespace

bool isScanComplete(HGLOBAL propertyRecord) noexcept {
  const PropertyRecord record(propertyRecord);
  const std::span<host::PropertyField> fields = record.fields();
  return !fields.empty() && fields[0].fieldId == host::fieldHeader && fields[0].scanComplete == 1;
}

int scanMappedFile(HGLOBAL fileData, HGLOBAL* out, u32 imageIndex) noexcept {
  const frame::SourcePath path = frame::sourcePathOf(fileData);
  const platform::LockedGlobal lock(fileData);
  auto* record = lock.as<host::FileDataRecord>();
  if (record == nullptr) return 0;
  if (isScanComplete(propertyRecordOf(*record))) return answer(propertyRecordOf(*record), out);
  SegmentMap map(record, lock.size());
  if (map && map.scanned()) return 0;

  const SourceFile source(path, *record);
  const std::optional<Bytes> file = source.bytes();
  if (!file) return 0;
  if (map) {
    const Bytes image = fromPlace(*file, imageStart(record, lock.size(), imageIndex));
    readNotedSegments(image, map, propertySlot(*record));
    map.setScannedByScan();
  }
  markComplete(propertyRecordOf(*record));
  return answer(propertyRecordOf(*record), out);
}

}  // namespace property
