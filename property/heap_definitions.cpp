#include "property/heap_definitions.h"

#include <algorithm>
#include <iterator>

namespace property {
namespace {

using host::i32;
using host::u16;
using host::u32;
using host::u8;

constexpr u16 fieldOfString = 2200;  // an item's field id less its string id

constexpr u8 ownName = 0x80;  // the item is shown under its record's name
constexpr u8 skip = 0x7F;

constexpr HeapRow rows[] = {
    {2, 0x0000, 0, 7, 2800, {2, '+', 4, 4, '+', skip, skip}},
    {0, 0x0000, 0, 0, 2601, {}},
    {0, 0x0001, 0, 0, 2602, {}},
    {0, 0x5803, 0, 2, 2808, {'+', ','}},
    {0, 0x1810, 0, 7, 2811, {'+', '+', ',', ')', '+', '+', '+'}},
    {0, 0x500A, 0, 4, 2819, {'*' | ownName, skip, skip, skip}},
    {0, 0x5804, 0, 2, 2824, {'+' | ownName, skip}},
    {0, 0x5817, 0, 2, 2827, {'+' | ownName, skip}},
    {0, 0x180E, 0, 3, 2830, {'/', ')', '+'}},
    {0, 0x0816, 0, 1, 2834, {'-' | ownName}},
    {0, 0x0817, 0, 1, 2836, {'-' | ownName}},
    {0, 0x0805, 0, 1, 2838, {'-' | ownName}},
    {0, 0x3002, 0, 0, 2840, {}},
    {0, 0x5010, 12, 4, 2841, {'*' | ownName, skip, skip, skip}},
    {0, 0x5011, 12, 4, 2846, {'*' | ownName, skip, skip, skip}},
    {0, 0x5805, 12, 2, 2851, {'+' | ownName, skip}},
    {0, 0x5813, 12, 2, 2854, {',', ','}},
    {0, 0x1818, 12, 3, 2857, {',', ',', ','}},
    {0, 0x5807, 12, 2, 2861, {',', skip}},
    {0, 0x3003, 0, 0, 2864, {}},
    {0, 0x5814, 19, 2, 2865, {',' | ownName, skip}},
    {0, 0x2807, 0, 0, 2868, {}},
    {0, 0x0810, 21, 1, 2869, {'-' | ownName}},
    {0, 0x080A, 21, 2, 2871, {'.', '.'}},
    {0, 0x3004, 21, 1, 2874, {'-'}},
    {0, 0x580B, 24, 2, 2875, {'+' | ownName, skip}},
    {0, 0x501C, 24, 4, 2878, {'+', skip, skip, skip}},
    {0, 0x080B, 24, 1, 2883, {'-' | ownName}},
};

constexpr u32 allBits = 0xFFFFFFFF;

constexpr u32 characters(const char (&text)[5]) {
  u32 value = 0;
  for (int i = 3; i >= 0; --i) value = value << 8 | static_cast<u8>(text[i]);
  return value;
}

constexpr HeapLabel byteOrderLabels[] = {{allBits, 0x4949, 3600}, {allBits, 0x4D4D, 3601}};
constexpr HeapLabel typeLabels[] = {{allBits, characters("HEAP"), 3620}};
constexpr HeapLabel subtypeLabels[] = {{allBits, characters("JPGM"), 3621},
                                       {allBits, characters("CCDR"), 3622},
                                       {allBits, characters("TIFP"), 3623},
                                       {allBits, characters("ARCH"), 3624}};
constexpr HeapLabel imageFormatLabels[] = {
    {0xFFFF0000, 0x00010000, 3602}, {0xFFFF0000, 0x00020000, 3603}, {0x0000FFFF, 0, 3604},
    {0x0000FFFF, 1, 3605},          {0x0000FFFF, 2, 3606},          {0x0000FFFF, 3, 3607}};
constexpr HeapLabel colourLabels[] = {
    {0xFF, 0, 3608}, {0xFF, 1, 3609}, {0xFF00, 0, 3610}, {0xFF00, 0x100, 3611}};
constexpr HeapLabel targetLabels[] = {{allBits, 0, 3612}, {allBits, 1, 3613}};
constexpr HeapLabel releaseMethodLabels[] = {{allBits, 0, 3614}, {allBits, 1, 3615}};
constexpr HeapLabel releaseTimingLabels[] = {{allBits, 0, 3616}, {allBits, 1, 3617}};

constexpr u16 flagsCaption = 2704;
constexpr u16 valueCaption = 2705;

constexpr HeapLabelList labelLists[] = {
    {2801, HeapFormat::bytes2, valueCaption, byteOrderLabels},
    {2803, HeapFormat::bytes4, valueCaption, typeLabels},
    {2804, HeapFormat::bytes4, valueCaption, subtypeLabels},
    {2809, HeapFormat::unsigned32, flagsCaption, imageFormatLabels},
    {2818, HeapFormat::unsigned32, flagsCaption, colourLabels},
    {2820, HeapFormat::unsigned32, valueCaption, targetLabels},
    {2842, HeapFormat::unsigned32, valueCaption, releaseMethodLabels},
    {2847, HeapFormat::unsigned32, valueCaption, releaseTimingLabels},
};

}  // namespace

std::span<const HeapRow> heapRows() noexcept { return rows; }

const HeapRow& heapRow(i32 row) noexcept { return rows[row]; }

i32 findHeapRow(u16 tag) noexcept {
  const auto found = std::find_if(std::begin(rows), std::end(rows), [tag](const HeapRow& row) {
    return row.kind == 0 && (row.tag & heapIdMask) == (tag & heapIdMask);
  });
  return found == std::end(rows) ? heapUnknownRow : static_cast<i32>(found - std::begin(rows));
}

HeapFormat HeapItem::format() const noexcept {
  return static_cast<HeapFormat>(heapRow(row).formats[item] & ~ownName);
}

u16 HeapItem::string() const noexcept {
  return static_cast<u16>(heapRow(row).baseString + item + 1);
}

u16 HeapItem::nameString() const noexcept {
  return (heapRow(row).formats[item] & ownName) != 0 ? heapRow(row).baseString : string();
}

u16 HeapItem::fieldId() const noexcept { return static_cast<u16>(fieldOfString + string()); }

u32 expandableItems(i32 row, u16 tag) noexcept {
  if (row == heapUnknownRow || heapRow(row).kind != 0 || hasSubHeapType(tag)) return 0;
  return heapRow(row).itemCount;
}

std::optional<HeapItem> heapItemOfField(u16 fieldId) noexcept {
  for (i32 row = 0; row < static_cast<i32>(std::size(rows)); ++row) {
    const i32 item = fieldId - fieldOfString - rows[row].baseString - 1;
    if (item >= 0 && item < rows[row].itemCount) return HeapItem{row, static_cast<u32>(item)};
  }
  return std::nullopt;
}

std::span<const HeapLabelList> heapLabelLists() noexcept { return labelLists; }

std::span<const HeapLabel> heapLabelsOf(u16 itemString) noexcept {
  for (const HeapLabelList& list : labelLists) {
    if (list.itemString == itemString) return list.labels;
  }
  return {};
}

}  // namespace property
