// The tag-definition tables: the open library's rows, which a test may change.
#include <algorithm>
#include <iterator>

#include "host/tag_definition.h"

extern "C" {
// The rows under these names are the open library's sources, compiled once more.
extern const host::TagDefinition openExifTags[host::exifRows];
extern const host::TagDefinition openGpsTags[host::gpsRows];
extern const host::TagDefinition openIptcTags[host::iptcRows];

host::TagDefinition _gfnFIOTIFFFORMATDef[host::exifRows];
host::TagDefinition _gfnFIOGPSExifDef[host::gpsRows];
host::TagDefinition _gfnIPTCRecordEntry[host::iptcRows];
}

namespace {

const bool filled = [] {
  std::copy(std::begin(openExifTags), std::end(openExifTags), _gfnFIOTIFFFORMATDef);
  std::copy(std::begin(openGpsTags), std::end(openGpsTags), _gfnFIOGPSExifDef);
  std::copy(std::begin(openIptcTags), std::end(openIptcTags), _gfnIPTCRecordEntry);
  return true;
}();

}  // namespace
