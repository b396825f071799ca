// One dataset in a table that is otherwise empty.
#include "host/property_record.h"
#include "host/tag_definition.h"

extern "C" {
extern const host::TagDefinition _gfnIPTCRecordEntry[host::iptcRows];
const host::TagDefinition _gfnIPTCRecordEntry[host::iptcRows] = {
    {5, 0, 0, host::kindText, host::fieldIptcFirst, host::noLabel, {}}};
}
