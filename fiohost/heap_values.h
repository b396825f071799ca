// The values of a camera-data heap (CIFF): each item is one field of the property record.
#pragma once

#include <string>

#include "fiohost/json_value.h"
#include "fiohost/properties.h"

namespace fiohost {

struct HeapValue {
  host::u32 number = 0;  // of a date its packed MS-DOS form, of a real its 32 bits
  std::string text;      // of a text, without a NUL

  [[nodiscard]] bool operator==(const HeapValue&) const = default;
};

[[nodiscard]] bool isHeapItem(host::u16 fieldId);

// The items of the heap, in its order; none when the file has no camera data.
[[nodiscard]] std::vector<Property> heapItems(const Session& session, const FileData& fileData);

[[nodiscard]] HeapValue heapValueOf(const Property& item);

// The value that text gives for the item: a decimal or, with 0x in front, hexadecimal number in
// the item's range; for a real a decimal number, or its 32 bits with 0x in front; for a date
// "YYYY-MM-DD HH:MM:SS". Throws Failure, naming the item, when it is no such value.
[[nodiscard]] HeapValue parseHeapValue(const Property& item, const std::string& text);

// The packed date as seconds since 1970, as if it were in universal time.
[[nodiscard]] host::u32 secondsOf(const HeapValue& date);

// The value as it is stored, and behind it in parentheses what it means where that differs.
[[nodiscard]] std::string heapItemText(const Property& item);
[[nodiscard]] Json heapItemInJson(const Property& item);

}  // namespace fiohost
