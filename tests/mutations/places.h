// Where the numbers lie that a reader goes by: lengths, counts, offsets, types, sizes of a JPEG or
// multi-picture file.
#pragma once

#include <cstddef>
#include <vector>

#include "tests/support/jpeg_builder.h"

namespace mutations {

using support::Bytes;

struct Place {
  std::size_t at;
  std::size_t width;  // bytes: 1, 2 or 4
  bool bigEndian;
};

struct Part {
  std::size_t begin;
  std::size_t end;
};

struct Structure {
  std::vector<Place> places;
  std::vector<Part> segments;  // with their markers, of every stream
};

// What a walk finds; it shares no code with the software under test and stops where a file lies.
[[nodiscard]] Structure structureOf(const Bytes& file);

[[nodiscard]] std::size_t numberAt(const Bytes& file, const Place& place);
void setNumber(Bytes& file, const Place& place, std::size_t number);

}  // namespace mutations
