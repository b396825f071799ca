#include "tests/mutations/mutator.h"

#include <algorithm>
#include <utility>

namespace mutations {
namespace {

constexpr std::size_t mostChanges = 3;

std::ptrdiff_t signedOf(std::size_t at) { return static_cast<std::ptrdiff_t>(at); }

Bytes copyOf(const Bytes& file, const Part& part) {
  return {file.begin() + signedOf(part.begin), file.begin() + signedOf(part.end)};
}

void erase(Bytes& file, const Part& part) {
  file.erase(file.begin() + signedOf(part.begin), file.begin() + signedOf(part.end));
}

void insert(Bytes& file, std::size_t at, const Bytes& bytes) {
  file.insert(file.begin() + signedOf(at), bytes.begin(), bytes.end());
}

}  // namespace

std::uint64_t Numbers::next() {
  state_ += 0x9E3779B97F4A7C15;
  std::uint64_t mixed = state_;
  mixed = (mixed ^ mixed >> 30) * 0xBF58476D1CE4E5B9;
  mixed = (mixed ^ mixed >> 27) * 0x94D049BB133111EB;
  return mixed ^ mixed >> 31;
}

Mutator::Mutator(Bytes source, std::uint64_t seed) : source_(std::move(source)), numbers_(seed) {}

Bytes Mutator::next() {
  Bytes file = source_;
  for (std::size_t left = 1 + numbers_.below(mostChanges); left > 0 && !file.empty(); --left) {
    structure_ = structureOf(file);
    change(file);
  }
  return file;
}

void Mutator::change(Bytes& file) {
  using Change = void (Mutator::*)(Bytes&);
  // What meets the readers' sums comes more often.
  constexpr Change changes[] = {
      &Mutator::setExtreme,    &Mutator::setExtreme,   &Mutator::setExtreme,
      &Mutator::flipAtPlace,   &Mutator::flipAtPlace,  &Mutator::cutSegment,
      &Mutator::doubleSegment, &Mutator::swapSegments, &Mutator::flipAnywhere,
      &Mutator::insertBytes,   &Mutator::cutOff};
  (this->*changes[numbers_.below(std::size(changes))])(file);
}

const Place* Mutator::anyPlace(const Bytes&) {
  if (structure_.places.empty()) return nullptr;
  return &structure_.places[numbers_.below(structure_.places.size())];
}

const Part* Mutator::anySegment(const Bytes&) {
  if (structure_.segments.empty()) return nullptr;
  return &structure_.segments[numbers_.below(structure_.segments.size())];
}

void Mutator::flipAtPlace(Bytes& file) {
  const Place* place = anyPlace(file);
  if (place == nullptr) return;
  setNumber(file, *place,
            numberAt(file, *place) ^ std::size_t{1} << numbers_.below(8 * place->width));
}

void Mutator::setExtreme(Bytes& file) {
  const Place* place = anyPlace(file);
  if (place == nullptr) return;
  const std::size_t largest = (std::size_t{1} << 8 * place->width) - 1;
  const std::size_t is = numberAt(file, *place);
  const std::size_t extremes[] = {0,           1,
                                  largest,     largest - 1,
                                  largest / 2, largest / 2 + 1,
                                  is + 1,      is - 1,
                                  file.size(), static_cast<std::size_t>(numbers_.next())};
  setNumber(file, *place, extremes[numbers_.below(std::size(extremes))]);
}

void Mutator::cutSegment(Bytes& file) {
  if (const Part* segment = anySegment(file)) erase(file, *segment);
}

void Mutator::doubleSegment(Bytes& file) {
  const Part* segment = anySegment(file);
  if (segment != nullptr) insert(file, segment->end, copyOf(file, *segment));
}

void Mutator::swapSegments(Bytes& file) {
  const Part* one = anySegment(file);
  const Part* other = anySegment(file);
  if (one == nullptr || one->begin == other->begin) return;
  if (one->begin > other->begin) std::swap(one, other);
  if (one->end > other->begin) return;
  const Bytes first = copyOf(file, *one);
  const Bytes second = copyOf(file, *other);
  erase(file, *other);
  insert(file, other->begin, first);
  erase(file, *one);
  insert(file, one->begin, second);
}

void Mutator::flipAnywhere(Bytes& file) {
  for (std::size_t left = 1 + numbers_.below(4); left > 0; --left) {
    file[numbers_.below(file.size())] ^= static_cast<std::uint8_t>(1 + numbers_.below(255));
  }
}

void Mutator::insertBytes(Bytes& file) {
  Bytes inserted(1 + numbers_.below(16));
  for (std::uint8_t& byte : inserted) byte = static_cast<std::uint8_t>(numbers_.next());
  insert(file, numbers_.below(file.size()), inserted);
}

void Mutator::cutOff(Bytes& file) {
  const Part* segment = anySegment(file);
  const bool behindSegment = segment != nullptr && numbers_.below(2) == 0;
  file.resize(behindSegment ? segment->end : numbers_.below(file.size()));
}

}  // namespace mutations
