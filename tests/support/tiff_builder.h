// TIFF structures of named entries, in either byte order (TIFF 6.0, section 2; EXIF 2.32).
//
//   TiffBuilder tiff(ByteOrder::big);
//   tiff.ifd0().text(tag::make, "Maker");
//   tiff.exif().rationals(tag::exposureTime, {{1, 250}});
//   tiff.thumbnail(jpeg);
//   Bytes payload = tiff.build();
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <initializer_list>
#include <string_view>
#include <utility>
#include <vector>

#include "tests/support/jpeg_builder.h"

namespace support {

enum class ByteOrder { little, big };

namespace tag {
inline constexpr std::uint16_t imageDescription = 0x010E;
inline constexpr std::uint16_t make = 0x010F;
inline constexpr std::uint16_t orientation = 0x0112;
inline constexpr std::uint16_t xResolution = 0x011A;
inline constexpr std::uint16_t jpegOffset = 0x0201;
inline constexpr std::uint16_t jpegLength = 0x0202;
inline constexpr std::uint16_t iptc = 0x83BB;
inline constexpr std::uint16_t exifPointer = 0x8769;
inline constexpr std::uint16_t gpsPointer = 0x8825;
inline constexpr std::uint16_t exposureTime = 0x829A;
inline constexpr std::uint16_t exifVersion = 0x9000;
inline constexpr std::uint16_t makerNote = 0x927C;
inline constexpr std::uint16_t userComment = 0x9286;
}  // namespace tag

// Numbers behind one another in one byte order, with places that can be written again.
class OrderedBytes {
 public:
  explicit OrderedBytes(ByteOrder order) : order_(order) {}

  void u16(std::uint32_t value) { number(value, 2); }
  void u32(std::uint32_t value) { number(value, 4); }
  void append(const Bytes& bytes) { bytes_.insert(bytes_.end(), bytes.begin(), bytes.end()); }
  void pad(std::size_t size) { bytes_.resize(std::max(size, bytes_.size())); }
  [[nodiscard]] const Bytes& bytes() const { return bytes_; }

 private:
  void number(std::uint32_t value, unsigned width) {
    for (unsigned i = 0; i < width; ++i) {
      const unsigned shift = 8 * (order_ == ByteOrder::big ? width - 1 - i : i);
      bytes_.push_back(static_cast<std::uint8_t>(value >> shift));
    }
  }

  ByteOrder order_;
  Bytes bytes_;
};

class TiffDirectory {
 public:
  using Rational = std::pair<std::uint32_t, std::uint32_t>;

  explicit TiffDirectory(ByteOrder order) : order_(order) {}

  // The NUL at the end is added, as the standard has it.
  TiffDirectory& text(std::uint16_t tag, std::string_view value) {
    Bytes bytes = bytesOf(value);
    bytes.push_back(0);
    return add(tag, 2, static_cast<std::uint32_t>(bytes.size()), bytes);
  }
  TiffDirectory& bytes(std::uint16_t tag, const Bytes& value) { return octets(tag, 1, value); }
  TiffDirectory& undefined(std::uint16_t tag, const Bytes& value) { return octets(tag, 7, value); }
  TiffDirectory& shorts(std::uint16_t tag, std::initializer_list<std::uint16_t> values) {
    OrderedBytes out(order_);
    for (const std::uint16_t value : values) out.u16(value);
    return add(tag, 3, static_cast<std::uint32_t>(values.size()), out.bytes());
  }
  TiffDirectory& longs(std::uint16_t tag, std::initializer_list<std::uint32_t> values) {
    OrderedBytes out(order_);
    for (const std::uint32_t value : values) out.u32(value);
    return add(tag, 4, static_cast<std::uint32_t>(values.size()), out.bytes());
  }
  TiffDirectory& rationals(std::uint16_t tag, std::initializer_list<Rational> values) {
    return fractions(tag, 5, values);
  }
  // Negative numbers as their two's complement.
  TiffDirectory& signedRationals(std::uint16_t tag, std::initializer_list<Rational> values) {
    return fractions(tag, 10, values);
  }
  // Any type and count with the value's bytes as they shall lie in the file; four or less lie in
  // the entry itself.
  TiffDirectory& add(std::uint16_t tag, std::uint16_t type, std::uint32_t count,
                     const Bytes& value) {
    entries_.push_back({tag, type, count, value, value.size() <= 4, 0});
    return *this;
  }
  // An entry whose last four bytes are this number, whatever its type says: for offsets that lie.
  TiffDirectory& lying(std::uint16_t tag, std::uint16_t type, std::uint32_t count,
                       std::uint32_t valueOrOffset) {
    OrderedBytes out(order_);
    out.u32(valueOrOffset);
    entries_.push_back({tag, type, count, out.bytes(), true, 0});
    return *this;
  }
  // The number of entries and the next directory's offset, in place of the true ones.
  TiffDirectory& claimCount(std::uint16_t count) {
    claimedCount_ = count;
    return *this;
  }
  TiffDirectory& claimNext(std::uint32_t offset) {
    claimedNext_ = offset;
    return *this;
  }

 private:
  friend class TiffBuilder;
  struct Entry {
    std::uint16_t tag;
    std::uint16_t type;
    std::uint32_t count;
    Bytes value;
    bool inlined;
    std::uint32_t offset;
  };

  TiffDirectory& octets(std::uint16_t tag, std::uint16_t type, const Bytes& value) {
    return add(tag, type, static_cast<std::uint32_t>(value.size()), value);
  }
  TiffDirectory& fractions(std::uint16_t tag, std::uint16_t type,
                           std::initializer_list<Rational> values) {
    OrderedBytes out(order_);
    for (const auto& [numerator, denominator] : values) {
      out.u32(numerator);
      out.u32(denominator);
    }
    return add(tag, type, static_cast<std::uint32_t>(values.size()), out.bytes());
  }
  [[nodiscard]] bool isUsed() const { return !entries_.empty() || claimedCount_ >= 0; }

  // Places the directory and then its values; returns the first free offset, an even one.
  std::uint32_t place(std::uint32_t offset) {
    offset_ = offset;
    std::uint32_t next = offset + 6 + 12 * static_cast<std::uint32_t>(entries_.size());
    for (Entry& entry : entries_) {
      if (entry.inlined) continue;
      entry.offset = next;
      next += static_cast<std::uint32_t>(entry.value.size() + 1) / 2 * 2;
    }
    return next;
  }
  void write(OrderedBytes& out, std::uint32_t nextDirectory) const {
    out.pad(offset_);
    out.u16(claimedCount_ >= 0 ? static_cast<std::uint32_t>(claimedCount_)
                               : static_cast<std::uint32_t>(entries_.size()));
    for (const Entry& entry : entries_) writeEntry(out, entry);
    out.u32(claimedNext_ >= 0 ? static_cast<std::uint32_t>(claimedNext_) : nextDirectory);
    for (const Entry& entry : entries_) {
      if (entry.inlined) continue;
      out.pad(entry.offset);
      out.append(entry.value);
    }
  }
  static void writeEntry(OrderedBytes& out, const Entry& entry) {
    out.u16(entry.tag);
    out.u16(entry.type);
    out.u32(entry.count);
    const std::size_t end = out.bytes().size() + 4;
    if (entry.inlined) {
      out.append(entry.value);
      out.pad(end);
    } else {
      out.u32(entry.offset);
    }
  }

  ByteOrder order_;
  std::vector<Entry> entries_;
  std::uint32_t offset_ = 0;
  std::int32_t claimedCount_ = -1;
  std::int64_t claimedNext_ = -1;
};

class TiffBuilder {
 public:
  explicit TiffBuilder(ByteOrder order = ByteOrder::little)
      : order_(order), ifd0_(order), exif_(order), gps_(order), ifd1_(order) {}

  // Directories without entries are left out, the 0th excepted. Entries stay as they are added.
  TiffDirectory& ifd0() { return ifd0_; }
  TiffDirectory& exif() { return exif_; }
  TiffDirectory& gps() { return gps_; }
  TiffDirectory& ifd1() { return ifd1_; }
  // The JPEG stream that the 1st IFD points to; it comes last.
  TiffBuilder& thumbnail(const Bytes& jpeg) {
    thumbnail_ = jpeg;
    return *this;
  }

  // The structure from its byte-order mark on, without the EXIF identifier.
  [[nodiscard]] Bytes build() const {
    TiffBuilder laidOut = *this;
    return laidOut.layOutAndWrite();
  }

 private:
  // Offsets are known after the layout, whose size does not depend on them: so it is made twice.
  std::uint32_t layOut() {
    std::uint32_t next = ifd0_.place(8);
    for (TiffDirectory* directory : {&exif_, &gps_, &ifd1_}) {
      if (directory->isUsed()) next = directory->place(next);
    }
    return next;
  }
  Bytes layOutAndWrite() {
    if (exif_.isUsed()) ifd0_.lying(tag::exifPointer, 4, 1, 0);
    if (gps_.isUsed()) ifd0_.lying(tag::gpsPointer, 4, 1, 0);
    if (!thumbnail_.empty()) {
      ifd1_.lying(tag::jpegOffset, 4, 1, 0);
      ifd1_.lying(tag::jpegLength, 4, 1, static_cast<std::uint32_t>(thumbnail_.size()));
    }
    const std::uint32_t end = layOut();
    if (exif_.isUsed()) point(ifd0_, tag::exifPointer, exif_.offset_);
    if (gps_.isUsed()) point(ifd0_, tag::gpsPointer, gps_.offset_);
    if (!thumbnail_.empty()) point(ifd1_, tag::jpegOffset, end);
    return write(end);
  }
  // Fills the pointer that was added last.
  void point(TiffDirectory& directory, std::uint16_t tag, std::uint32_t offset) const {
    const auto entry =
        std::find_if(directory.entries_.rbegin(), directory.entries_.rend(),
                     [tag](const TiffDirectory::Entry& listed) { return listed.tag == tag; });
    OrderedBytes out(order_);
    out.u32(offset);
    entry->value = out.bytes();
  }
  [[nodiscard]] Bytes write(std::uint32_t end) const {
    OrderedBytes out(order_);
    out.append(bytesOf(order_ == ByteOrder::big ? "MM" : "II"));
    out.u16(42);
    out.u32(8);
    ifd0_.write(out, ifd1_.isUsed() ? ifd1_.offset_ : 0);
    for (const TiffDirectory* directory : {&exif_, &gps_, &ifd1_}) {
      if (directory->isUsed()) directory->write(out, 0);
    }
    out.pad(end);
    out.append(thumbnail_);
    return out.bytes();
  }

  ByteOrder order_;
  TiffDirectory ifd0_;
  TiffDirectory exif_;
  TiffDirectory gps_;
  TiffDirectory ifd1_;
  Bytes thumbnail_;
};

}  // namespace support
