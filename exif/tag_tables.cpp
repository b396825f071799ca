#include "exif/tag_tables.h"

#include "platform/delay_load.h"

namespace exif {
namespace {

TagTable findTable(const char* name, unsigned rows) noexcept {
  void* found = reinterpret_cast<void*>(platform::findDelayed("kFioUtil.dll", name));
  if (found == nullptr) return {};
  return {static_cast<const host::TagDefinition*>(found), rows};
}

}  // namespace

TagTable exifTable() noexcept { return findTable("_gfnFIOTIFFFORMATDef", host::exifRows); }

TagTable gpsTable() noexcept { return findTable("_gfnFIOGPSExifDef", host::gpsRows); }

TagTable iptcTable() noexcept { return findTable("_gfnIPTCRecordEntry", host::iptcRows); }

}  // namespace exif
