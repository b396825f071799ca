#include "property/heap_text.h"

#include <bit>

#include "frame/resource_text.h"
#include "property/heap_date.h"
#include "property/heap_item_value.h"

namespace property {
namespace {

using host::i32;
using host::u16;
using host::u32;
using host::u8;

constexpr u16 unknownName = 2610;
constexpr std::size_t mostHeaderCharacters = 9;

// A value as text, and as the number that labels are looked up by.
struct Formatted {
  HeapTextKind kind;
  std::string text;
  u32 number;
};

Formatted formatCharacters(std::string_view text) {
  u32 number = 0;
  std::memcpy(&number, text.data(), std::min(text.size(), sizeof number));
  return {HeapTextKind::text, std::string(text), number};
}

Formatted formatNumber(std::string text, u32 number) {
  return {HeapTextKind::binary, std::move(text), number};
}

SYSTEMTIME systemTimeOf(const std::tm& time) noexcept {
  SYSTEMTIME result = {};
  result.wYear = static_cast<WORD>(time.tm_year + 1900);
  result.wMonth = static_cast<WORD>(time.tm_mon + 1);
  result.wDayOfWeek = static_cast<WORD>(time.tm_wday);
  result.wDay = static_cast<WORD>(time.tm_mday);
  result.wHour = static_cast<WORD>(time.tm_hour);
  result.wMinute = static_cast<WORD>(time.tm_min);
  result.wSecond = static_cast<WORD>(time.tm_sec);
  return result;
}

std::string displayTime(const std::tm& time) {
  const SYSTEMTIME parts = systemTimeOf(time);
  char date[128] = {};
  char clock[128] = {};
  GetDateFormatA(LOCALE_SYSTEM_DEFAULT, LOCALE_NOUSEROVERRIDE, &parts, nullptr, date, sizeof date);
  GetTimeFormatA(LOCALE_SYSTEM_DEFAULT, LOCALE_NOUSEROVERRIDE | TIME_FORCE24HOURFORMAT, &parts,
                 nullptr, clock, sizeof clock);
  return std::string(date) + "   " + clock;
}

std::optional<Formatted> formatTime(const ParsedHeap& heap, HeapValue value, u32 item,
                                    HeapTextUse use) {
  const auto time = heapTime(value, item);
  if (!time) return std::nullopt;
  std::string text = use == HeapTextUse::display
                         ? displayTime(*time)
                         : printHeapDate(heap.resources(), *time).characters;
  return Formatted{HeapTextKind::time, std::move(text), heapElement32(value, item).value_or(0)};
}

std::optional<Formatted> format16(HeapValue value, u32 item, bool isSigned) {
  const auto number = heapElement16(value, item);
  if (!number) return std::nullopt;
  const i32 shown = isSigned ? static_cast<std::int16_t>(*number) : i32{*number};
  return formatNumber(std::to_string(shown), static_cast<u32>(shown));
}

std::optional<Formatted> format32(HeapValue value, u32 item, HeapFormat format) {
  const auto number = heapElement32(value, item);
  if (!number) return std::nullopt;
  if (format == HeapFormat::real32) {
    return formatNumber(std::to_string(std::bit_cast<float>(*number)), *number);
  }
  const bool isSigned = format == HeapFormat::signed32;
  return formatNumber(
      isSigned ? std::to_string(static_cast<i32>(*number)) : std::to_string(*number), *number);
}

std::optional<Formatted> formatText(HeapValue value, u32 item, HeapFormat format) {
  const auto text = heapText(value, format, item);
  if (!text) return std::nullopt;
  return formatCharacters(*text);
}

std::optional<Formatted> formatItem(const ParsedHeap& heap, i32 index, const HeapItem& item,
                                    HeapTextUse use) {
  const HeapValue value = heap.value(index);
  switch (const HeapFormat format = item.format()) {
    case HeapFormat::signed16:
    case HeapFormat::unsigned16:
      return format16(value, item.item, format == HeapFormat::signed16);
    case HeapFormat::signed32:
    case HeapFormat::unsigned32:
    case HeapFormat::real32:
      return format32(value, item.item, format);
    case HeapFormat::text:
    case HeapFormat::packedText:
      return formatText(value, item.item, format);
    case HeapFormat::date:
      return formatTime(heap, value, item.item, use);
    default:
      return std::nullopt;
  }
}

// The header's items lie where the header's layout puts them, not one behind the other.
std::optional<Formatted> formatHeaderItem(const ParsedHeap& heap, const HeapItem& item) {
  if (item.format() == HeapFormat::skipped) return std::nullopt;
  const HeapValue place = heap.value(heapHeaderRow).subspan(heapHeaderItemOffset(item.item));
  const auto width = static_cast<std::size_t>(item.format());
  if (width > mostHeaderCharacters) return format32(place, 0, item.format());
  return formatCharacters({reinterpret_cast<const char*>(place.data()), width});
}

std::optional<Formatted> formatUnknown(const ParsedHeap& heap, i32 index, u32 row) {
  const HeapValue value = heap.value(index);
  switch (heapTypeOf(heap.record(index).tag)) {
    case heapTypeBytes:
    case heapTypeText:
      return formatText(value, row, HeapFormat::text);
    case heapType16:
      return format16(value, row, false);
    default:
      return format32(value, row, HeapFormat::unsigned32);
  }
}

u32 unknownRowCount(const ParsedHeap& heap, i32 index) noexcept {
  const auto size = static_cast<u32>(heap.value(index).size());
  switch (heapTypeOf(heap.record(index).tag)) {
    case heapTypeBytes:
    case heapTypeText:
      return 1;
    case heapType16:
      return size / 2;
    case heapType32:
      return size / 4;
    default:
      return 0;
  }
}

}  // namespace

u16 heapRecordName(const HeapRecord& record) noexcept {
  return record.row == heapUnknownRow ? unknownName : heapRow(record.row).baseString;
}

u32 heapRowCount(const ParsedHeap& heap, i32 index) noexcept {
  const HeapRecord& record = heap.record(index);
  if (hasSubHeapType(record.tag)) return 0;
  return record.row == heapUnknownRow ? unknownRowCount(heap, index)
                                      : u32{heapRow(record.row).itemCount};
}

std::string heapLabels(HMODULE resources, const HeapItem& item, u32 number) {
  std::string text;
  for (const HeapLabel& label : heapLabelsOf(item.string())) {
    if ((number & label.mask) == label.match) text += frame::resourceText(resources, label.string);
  }
  return text;
}

std::optional<HeapItemText> formatHeapRow(const ParsedHeap& heap, i32 index, u32 row,
                                          HeapTextUse use) {
  const HeapRecord& record = heap.record(index);
  if (record.row == heapUnknownRow) {
    auto formatted = formatUnknown(heap, index, row);
    if (!formatted) return std::nullopt;
    return HeapItemText{unknownName, HeapTextKind::binary, std::move(formatted->text)};
  }
  const HeapItem item = {record.row, row};
  auto formatted = record.row == heapHeaderRow ? formatHeaderItem(heap, item)
                                               : formatItem(heap, index, item, use);
  if (!formatted) return std::nullopt;
  if (use == HeapTextUse::display) {
    formatted->text += heapLabels(heap.resources(), item, formatted->number);
  }
  return HeapItemText{item.nameString(), formatted->kind, std::move(formatted->text)};
}

}  // namespace property
