#include "property/set_property.h"

#include "frame/module.h"
#include "property/heap_write_back.h"
#include "property/property_record.h"

namespace property {

void setProperty(HGLOBAL fileData, HGLOBAL property, const SegmentMapLayout& layout) noexcept {
  if (fileData == nullptr) return;
  const platform::LockedGlobal lock(fileData);
  auto* record = lock.as<host::FileDataRecord>();
  if (record == nullptr || !writeHeapBack(frame::resourceLibrary(), property)) return;
  record->propertyRecord = reinterpret_cast<host::u64>(property);
  SegmentMap map(lock.address(), lock.size(), layout);
  host::u32 length = 0;
  if (map && findField(property, host::fieldHeap, nullptr, &length) != 0) {
    map.setLength(layout.heap, length);
  }
}

}  // namespace property

extern "C" {

// Both answer 0 on success and on failure alike.
int kfDLLSetProperty(HGLOBAL fileData, HGLOBAL property) noexcept {
  property::setProperty(fileData, property, property::jpegSegmentMap);
  return 0;
}

int kfDLLMPOSetProperty(HGLOBAL fileData, HGLOBAL property) noexcept {
  property::setProperty(fileData, property, property::mpoSegmentMap);
  return 0;
}
}
