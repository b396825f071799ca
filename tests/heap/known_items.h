// Every item of every known record, as a heap holds it: what the tests of reading and writing walk.
#pragma once

#include <algorithm>
#include <functional>
#include <string_view>
#include <vector>

#include "tests/heap/heap_model.h"

namespace test {

struct KnownRecord {
  std::uint16_t tag;
  std::vector<std::uint16_t> parents;  // sub-heaps around it, from the outside
  std::uint16_t base;
  std::string_view formats;  // one character an item, 's' for an item that is no field
  std::string_view ownName;  // 'r' where the item is shown under its record's name
};

inline const std::vector<KnownRecord> knownRecords = {
    {0x5803, {}, 2808, "+,", "  "},
    {0x1810, {}, 2811, "++,)+++", "       "},
    {0x500A, {}, 2819, "*sss", "r   "},
    {0x5804, {}, 2824, "+s", "r "},
    {0x5817, {}, 2827, "+s", "r "},
    {0x180E, {}, 2830, "/)+", "   "},
    {0x0816, {}, 2834, "-", "r"},
    {0x0817, {}, 2836, "-", "r"},
    {0x0805, {}, 2838, "-", "r"},
    {0x5010, {0x3002}, 2841, "*sss", "r   "},
    {0x5011, {0x3002}, 2846, "*sss", "r   "},
    {0x5805, {0x3002}, 2851, "+s", "r "},
    {0x5813, {0x3002}, 2854, ",,", "  "},
    {0x1818, {0x3002}, 2857, ",,,", "   "},
    {0x5807, {0x3002}, 2861, ",s", "  "},
    {0x5814, {0x3003}, 2865, ",s", "r "},
    {0x0810, {0x2807}, 2869, "-", "r"},
    {0x080A, {0x2807}, 2871, "..", "  "},
    {0x580B, {0x2807, 0x3004}, 2875, "+s", "r "},
    {0x501C, {0x2807, 0x3004}, 2878, "+sss", "    "},
    {0x080B, {0x2807, 0x3004}, 2883, "-", "r"},
};

// A value of the record's type with every byte different where numbers are.
inline Bytes knownValue(const KnownRecord& record) {
  if ((record.tag & 0x3800) == 0x0800) {
    return record.formats.size() == 2 ? texts({"Maker", "Model X"}) : texts({"Some text"});
  }
  const std::size_t width = (record.tag & 0x3800) == 0x1000 ? 2 : 4;
  const bool inEntry = (record.tag & 0xC000) != 0;
  Bytes value(inEntry ? 8 : width * record.formats.size());
  for (std::size_t i = 0; i < value.size(); ++i) value[i] = static_cast<std::uint8_t>(0x11 + i);
  if (record.tag == 0x180E) value[8] = 0;  // no zone
  return value;
}

// The record inside its sub-heaps.
inline ModelRecord wrapped(const KnownRecord& record, Bytes value) {
  ModelRecord result = {record.tag, std::move(value)};
  for (auto parent = record.parents.rbegin(); parent != record.parents.rend(); ++parent) {
    ModelRecord outer = {*parent};
    outer.children.push_back(std::move(result));
    result = std::move(outer);
  }
  return result;
}

// The field kind of a format character.
inline std::uint16_t fieldKind(char format) {
  switch (format) {
    case '(':
      return 15;
    case '*':
      return 16;
    case ')':
    case '+':
      return 2;
    case ',':
      return 3;
    case '/':
      return 6;
    default:
      return 1;
  }
}

inline std::uint32_t numberAt(const Bytes& value, std::size_t number, std::size_t width) {
  std::uint32_t result = 0;
  for (std::size_t i = width; i-- > 0;) result = result << 8 | value[number * width + i];
  return result;
}

}  // namespace test
