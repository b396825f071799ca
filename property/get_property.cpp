// Fetching a file's property record: both passes of the metadata scan, where they are needed.
#include <cstring>

#include "frame/source_path.h"
#include "host/plugin_entries.h"
#include "property/metadata_scan.h"
#include "property/property_record.h"
#include "property/segment_capture.h"

namespace property {
namespace {

using host::u32;
using host::u64;

// The codec is run for the application segments alone.
u32 captureEvent(void* context, u32 event, u64, void* block) noexcept {
  if (event == host::eventHeader) return host::codecHeaderOnly;
  if (event == host::eventSegment && block != nullptr) {
    static_cast<SegmentCapture*>(context)->capture(*static_cast<host::SegmentRecord*>(block));
  }
  return host::codecGoOn;
}

bool captureSegments(const frame::SourcePath& path, host::FileDataRecord& record,
                     SegmentCapture& capture) noexcept {
  const host::CodecCallback callback{&capture, &captureEvent};
  if (path.wide != nullptr) return kJpgFileReadExW(path.wide, &callback, nullptr) == 1;
  if (path.ansi != nullptr) return kJpgFileReadEx(path.ansi, &callback, nullptr) == 1;
  const char* name = record.ansiPath;
  return std::memchr(name, '\0', sizeof record.ansiPath) != nullptr &&
         kJpgFileReadEx(name, &callback, nullptr) == 1;
}

bool anySegmentNoted(const SegmentMap& map) noexcept {
  const SegmentMapLayout& layout = map.layout();
  return map.place(layout.heap).present != 0 || map.place(layout.exif).present != 0 ||
         map.place(layout.iptc).present != 0;
}

// Makes sure that the record's map notes the metadata segments. True when there are any.
bool noteSegments(const frame::SourcePath& path, host::FileDataRecord& record, std::size_t size,
                  SegmentMap& map) noexcept {
  if (anySegmentNoted(map)) return true;
  SegmentCapture capture(&record, size, scanRules);
  if (!captureSegments(path, record, capture)) {
    capture.takeBack();
    return false;
  }
  if (anySegmentNoted(map)) return true;
  map.setScanned();
  return false;
}

int getProperty(HGLOBAL fileData, HGLOBAL* out) noexcept {
  const frame::SourcePath path = frame::sourcePathOf(fileData);
  platform::LockedGlobal lock(fileData);
  auto* record = lock.as<host::FileDataRecord>();
  if (record == nullptr) return 0;
  if (const HGLOBAL known = propertyRecordOf(*record); isScanComplete(known)) {
    if (out != nullptr) *out = known;
    return 1;
  }
  SegmentMap map(record, lock.size());
  if (!map || map.scanned()) return 0;
  if (!noteSegments(path, *record, lock.size(), map)) return 0;
  lock.unlock();
  return scanMappedFile(fileData, out, 0);
}

}  // namespace
}  // namespace property

extern "C" {

int kfDLLGetProperty(HGLOBAL fileData, HGLOBAL* out) noexcept {
  return property::getProperty(fileData, out);
}

// The families differ only in where a record keeps its segment map.
int kfDLLMPOGetProperty(HGLOBAL fileData, HGLOBAL* out) noexcept {
  return kfDLLGetProperty(fileData, out);
}
}
