#include "fiohost/heap_tree.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <deque>

#include "fiohost/failure.h"
#include "fiohost/heap_values.h"
#include "property/heap_errors.h"
#include "property/heap_parser.h"
#include "property/heap_text.h"

// A heap for which there is no memory is none that can be read: that is told below.
void property::reportHeapMemory(HeapMemory) noexcept {}

namespace fiohost {
namespace {

using host::i32;
using host::u16;
using host::u32;
using property::HeapItem;
using property::HeapRecord;
using property::ParsedHeap;

// The plug-in's library of texts; it is loaded wherever the plug-in is.
HMODULE textLibrary() { return GetModuleHandleA("KFRES.DLL"); }

std::string loadText(u16 id) {
  std::array<char, 128> text = {};
  LoadStringA(textLibrary(), id, text.data(), static_cast<int>(text.size()));
  return text.data();
}

std::string tagText(u16 tag) {
  std::array<char, 8> text = {};
  std::snprintf(text.data(), text.size(), "0x%04X", unsigned{tag});
  return text.data();
}

std::string indented(std::size_t depth, const std::string& text) {
  return std::string(2 * (depth + 1), ' ') + text;
}

// A value's line: values stand below one another, whatever the depth of their names.
std::string valueLine(std::size_t depth, const std::string& name, const std::string& value) {
  constexpr std::size_t valueColumn = 38;
  std::string line = indented(depth, name);
  line.resize(std::max(line.size() + 1, valueColumn), ' ');
  return line + value + "\n";
}

// A record with one value of the same name needs no line of its own.
bool isNamedByItsValue(const HeapRecord& record) {
  return property::expandableItems(record.row, record.tag) > 0 &&
         HeapItem{record.row, 0}.nameString() == property::heapRecordName(record);
}

// The heap's records from the top. The values of the records that the plug-in knows are its
// property fields, which stand in the same order.
class HeapLister {
 public:
  HeapLister(const ParsedHeap& heap, std::vector<Property> items)
      : heap_(heap), items_(items.begin(), items.end()) {}

  HeapListing list() {
    Json json = record(property::heapHeaderRow, 0);
    return {std::move(words_), std::move(json)};
  }

 private:
  Json record(i32 index, std::size_t depth);
  Json values(i32 index, std::size_t depth);
  Json fieldValue(const HeapItem& item, std::size_t depth);
  Json textValue(i32 index, u32 row, std::size_t depth);

  const ParsedHeap& heap_;
  std::deque<Property> items_;  // those not listed yet
  std::string words_;
};

Json HeapLister::fieldValue(const HeapItem& item, std::size_t depth) {
  const Property field = items_.front();
  items_.pop_front();
  const std::string label = property::heapLabels(textLibrary(), item, heapValueOf(field).number);
  words_ += valueLine(depth, field.name, heapItemText(field) + label);
  Json json = heapItemInJson(field);
  json["label"] = label.empty() ? Json(nullptr) : Json(label.substr(1));
  return json;
}

// A value of the header or of a record that nobody knows.
Json HeapLister::textValue(i32 index, u32 row, std::size_t depth) {
  const auto text = property::formatHeapRow(heap_, index, row, property::HeapTextUse::edit);
  if (!text) return nullptr;
  const auto shown = property::formatHeapRow(heap_, index, row, property::HeapTextUse::display);
  const bool isKnown = heap_.record(index).row != property::heapUnknownRow;
  const std::string name = isKnown ? loadText(text->nameString) : std::to_string(row + 1);
  const std::string label = shown->text.substr(text->text.size());
  words_ += valueLine(depth, name, shown->text);
  return {{"name", name},
          {"value", text->text},
          {"label", label.empty() ? Json(nullptr) : Json(label.substr(1))}};
}

Json HeapLister::values(i32 index, std::size_t depth) {
  const HeapRecord& record = heap_.record(index);
  const bool hasFields = property::expandableItems(record.row, record.tag) > 0;
  Json list = Json::array();
  for (u32 row = 0; row < property::heapRowCount(heap_, index); ++row) {
    const HeapItem item = {record.row, row};
    if (!hasFields) {
      Json value = textValue(index, row, depth);
      if (!value.is_null()) list.push_back(std::move(value));
    } else if (!items_.empty() && items_.front().id == item.fieldId()) {
      list.push_back(fieldValue(item, depth));
    }
  }
  return list;
}

Json HeapLister::record(i32 index, std::size_t depth) {
  const HeapRecord& record = heap_.record(index);
  const bool isHeader = index == property::heapHeaderRow;
  const bool isUnknown = record.row == property::heapUnknownRow;
  const std::string name = loadText(property::heapRecordName(record));
  const std::string tag = isHeader ? "" : tagText(record.tag);
  Json json = {{"name", name}, {"tag", isHeader ? Json(nullptr) : Json(tag)}};
  const std::string title = indented(depth, name + (isUnknown ? " " + tag : "")) + "\n";
  if (!isNamedByItsValue(record)) words_ += title;
  const std::size_t before = words_.size();
  json["values"] = values(index, depth + (isNamedByItsValue(record) ? 0 : 1));
  if (isNamedByItsValue(record) && words_.size() == before) words_ += title;
  if (!isHeader && !property::isSubHeap(record.tag)) {
    json["bytes"] = heap_.value(index).size();
    return json;
  }
  json["records"] = Json::array();
  for (i32 child = record.firstChild; child >= 0; child = heap_.record(child).nextSibling) {
    json["records"].push_back(this->record(child, depth + 1));
  }
  return json;
}

}  // namespace

HeapListing listHeap(const Session& session, const FileData& fileData) {
  const std::vector<Property> properties = readProperties(session, fileData);
  const auto whole = std::find_if(properties.begin(), properties.end(),
                                  [](const Property& one) { return one.id == host::fieldHeap; });
  if (whole == properties.end()) {
    throw Failure("this file has no camera data", "there is nothing to list");
  }
  const auto heap = property::parseHeap(textLibrary(), whole->value);
  if (!heap) throw Failure("the camera data is damaged", "nothing of it can be listed");
  return HeapLister(*heap, heapItems(session, fileData)).list();
}

}  // namespace fiohost
