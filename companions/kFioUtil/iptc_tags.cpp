// The datasets of the application record, record 2 (IPTC-NAA Information Interchange Model 4.2,
// chapter 6). All are kept as text, the binary record version too.
#include "companions/kFioUtil/tag_tables.h"

namespace kFioUtil {
namespace {

constexpr host::TagDefinition defineIptc(host::u16 row, host::u16 dataset, host::u32 label) {
  return {dataset,
          anyType,
          anyCount,
          host::kindText,
          static_cast<host::u16>(host::fieldIptcFirst + row),
          label,
          {}};
}

}  // namespace
}  // namespace kFioUtil

using namespace kFioUtil;

constexpr host::TagDefinition _gfnIPTCRecordEntry[host::iptcRows] = {
    defineIptc(0, 0, 2400),     // Record Version
    defineIptc(1, 5, 2401),     // Object Name
    defineIptc(2, 7, 1500),     // Edit Status
    defineIptc(3, 10, 2402),    // Urgency
    defineIptc(4, 12, 1501),    // Subject Reference
    defineIptc(5, 15, 2403),    // Category
    defineIptc(6, 20, 2404),    // Supplemental Category
    defineIptc(7, 22, 1502),    // Fixture Identifier
    defineIptc(8, 25, 2405),    // Keywords
    defineIptc(9, 40, 2406),    // Special Instructions
    defineIptc(10, 55, 2407),   // Date Created
    defineIptc(11, 60, 1503),   // Time Created
    defineIptc(12, 80, 2408),   // By-line
    defineIptc(13, 85, 2409),   // By-line Title
    defineIptc(14, 90, 2410),   // City
    defineIptc(15, 92, 1504),   // Sub-location
    defineIptc(16, 95, 2411),   // Province/State
    defineIptc(17, 100, 2412),  // Country/Primary Location Code; shares its label with the name
    defineIptc(18, 101, 2412),  // Country/Primary Location Name
    defineIptc(19, 103, 2413),  // Original Transmission Reference
    defineIptc(20, 105, 2414),  // Headline
    defineIptc(21, 110, 2415),  // Credit
    defineIptc(22, 115, 2416),  // Source
    defineIptc(23, 116, 2417),  // Copyright Notice
    defineIptc(24, 118, 1505),  // Contact
    defineIptc(25, 120, 2418),  // Caption/Abstract
    defineIptc(26, 122, 2419),  // Writer/Editor
};

static_assert(_gfnIPTCRecordEntry[host::iptcRows - 1].fieldId == host::fieldIptcLast);
