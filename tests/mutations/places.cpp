#include "tests/mutations/places.h"

#include <algorithm>
#include <set>
#include <string_view>

namespace mutations {
namespace {

constexpr std::size_t mostEntries = 64;

class Walk {
 public:
  explicit Walk(const Bytes& file) : file_(file) {}

  Structure run() {
    for (std::size_t at = 0; at + 2 < file_.size(); ++at) {
      if (file_[at] == 0xFF && file_[at + 1] == 0xD8 && file_[at + 2] == 0xFF) stream(at + 2);
    }
    return std::move(found_);
  }

 private:
  [[nodiscard]] bool holds(std::size_t at, std::size_t width) const {
    return at <= file_.size() && width <= file_.size() - at;
  }
  [[nodiscard]] bool holds(std::size_t at, std::string_view text) const {
    return holds(at, text.size()) &&
           std::equal(text.begin(), text.end(), file_.begin() + static_cast<std::ptrdiff_t>(at),
                      [](char a, std::uint8_t b) { return static_cast<std::uint8_t>(a) == b; });
  }
  // The number there, as a place; 0 outside.
  std::size_t number(std::size_t at, std::size_t width, bool bigEndian) {
    if (!holds(at, width)) return 0;
    found_.places.push_back({at, width, bigEndian});
    return numberAt(file_, found_.places.back());
  }

  void stream(std::size_t at) {
    while (holds(at, 4) && file_[at] == 0xFF) {
      const std::uint8_t marker = file_[at + 1];
      number(at + 1, 1, true);
      const std::size_t length = number(at + 2, 2, true);
      if (length < 2 || !holds(at + 2, length)) return;
      found_.segments.push_back({at, at + 2 + length});
      segment(marker, at + 4, at + 2 + length);
      if (marker == 0xDA) return;
      at += 2 + length;
    }
  }

  void segment(std::uint8_t marker, std::size_t begin, std::size_t end) {
    if (holds(begin, "Exif")) return tiff(begin + 6);
    if (holds(begin, "MPF")) return tiff(begin + 4);
    if (holds(begin + 6, "HEAP")) return heap(begin + 26, end, holds(begin, "MM"), 0);
    if (holds(begin, "Photoshop")) return resources(begin + 14, end);
    if (holds(begin, "ICC_PROFILE")) return bytes(begin + 12, begin + 14);
    if (holds(begin, "http://ns.adobe.com/xmp/ext")) {
      number(begin + 67, 4, true);
      number(begin + 71, 4, true);
      return;
    }
    const bool frame = marker >= 0xC0 && marker <= 0xCF && marker != 0xC4;
    if (frame) {
      number(begin + 1, 2, true);
      number(begin + 3, 2, true);
    }
    constexpr std::size_t mostBytes = 24;
    if (marker < 0xE0) bytes(begin, std::min(end, begin + mostBytes));
  }

  void bytes(std::size_t begin, std::size_t end) {
    for (std::size_t at = begin; at < end; ++at) number(at, 1, true);
  }

  void tiff(std::size_t base) {
    const bool big = holds(base, "MM");
    number(base, 2, big);
    number(base + 2, 2, big);
    std::set<std::size_t> visited;
    directories(base, number(base + 4, 4, big), big, visited);
  }

  void directories(std::size_t base, std::size_t offset, bool big, std::set<std::size_t>& visited) {
    while (offset != 0 && holds(base, offset) && visited.insert(offset).second) {
      std::size_t at = base + offset;
      const std::size_t count = std::min(number(at, 2, big), mostEntries);
      at += 2;
      for (std::size_t entry = 0; entry < count; ++entry, at += 12) {
        const std::size_t tag = number(at, 2, big);
        number(at + 2, 2, big);
        number(at + 4, 4, big);
        const std::size_t value = number(at + 8, 4, big);
        if (tag == 0x8769 || tag == 0x8825 || tag == 0xA005) directories(base, value, big, visited);
      }
      offset = number(at, 4, big);
    }
  }

  // A block of a camera-data heap: its last four bytes say where its table is.
  void heap(std::size_t begin, std::size_t end, bool big, int depth) {
    constexpr int deepest = 8;
    if (end < begin + 4 || !holds(begin, end - begin) || depth > deepest) return;
    std::size_t at = begin + number(end - 4, 4, big);
    const std::size_t count = std::min(number(at, 2, big), mostEntries);
    at += 2;
    for (std::size_t entry = 0; entry < count; ++entry, at += 10) {
      const std::size_t tag = number(at, 2, big);
      const std::size_t size = number(at + 2, 4, big);
      const std::size_t offset = number(at + 6, 4, big);
      const std::size_t type = tag & 0x3800;
      if (type != 0x2800 && type != 0x3000) continue;
      if (begin + offset < end) heap(begin + offset, begin + offset + size, big, depth + 1);
    }
  }

  void resources(std::size_t begin, std::size_t end) {
    for (std::size_t at = begin; at < end; ++at) {
      if (holds(at, "8BIM")) {
        number(at + 4, 2, true);
        number(at + 6, 1, true);
        number(at + 8, 4, true);
      }
      if (file_[at] == 0x1C) {
        number(at + 1, 1, true);
        number(at + 2, 1, true);
        number(at + 3, 2, true);
      }
    }
  }

  const Bytes& file_;
  Structure found_;
};

}  // namespace

Structure structureOf(const Bytes& file) { return Walk(file).run(); }

std::size_t numberAt(const Bytes& file, const Place& place) {
  std::size_t number = 0;
  for (std::size_t i = 0; i < place.width; ++i) {
    const std::size_t byte = place.bigEndian ? i : place.width - 1 - i;
    number = number << 8 | file[place.at + byte];
  }
  return number;
}

void setNumber(Bytes& file, const Place& place, std::size_t number) {
  for (std::size_t i = 0; i < place.width; ++i, number >>= 8) {
    const std::size_t byte = place.bigEndian ? place.width - 1 - i : i;
    file[place.at + byte] = static_cast<std::uint8_t>(number);
  }
}

}  // namespace mutations
