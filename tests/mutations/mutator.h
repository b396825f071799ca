// Files that differ from good ones where it hurts, the same for the same seed on every machine.
#pragma once

#include <cstdint>

#include "tests/mutations/places.h"

namespace mutations {

// A sequence of numbers by its seed (splitmix64).
class Numbers {
 public:
  explicit Numbers(std::uint64_t seed) : state_(seed) {}

  std::uint64_t next();
  // Below limit, which is at least 1.
  std::size_t below(std::size_t limit) { return static_cast<std::size_t>(next() % limit); }

 private:
  std::uint64_t state_;
};

class Mutator {
 public:
  Mutator(Bytes source, std::uint64_t seed);

  // One to three changes: bits flipped or a number made extreme at a structural place, segments
  // cut, doubled or swapped, bytes flipped or put in anywhere, the file cut off.
  [[nodiscard]] Bytes next();

 private:
  void change(Bytes& file);
  void flipAtPlace(Bytes& file);
  void setExtreme(Bytes& file);
  void cutSegment(Bytes& file);
  void doubleSegment(Bytes& file);
  void swapSegments(Bytes& file);
  void flipAnywhere(Bytes& file);
  void insertBytes(Bytes& file);
  void cutOff(Bytes& file);

  // Of the file as it is now; an earlier change may have moved everything.
  [[nodiscard]] const Place* anyPlace(const Bytes& file);
  [[nodiscard]] const Part* anySegment(const Bytes& file);

  Bytes source_;
  Numbers numbers_;
  Structure structure_;
};

}  // namespace mutations
