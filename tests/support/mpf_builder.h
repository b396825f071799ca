// Multi-picture segments of named entries (CIPA DC-007), and files of several JPEG streams.
//
//   MpfBuilder mpf(ByteOrder::big);
//   mpf.ifd().number(mpf::imageCount, 2).images({{.attribute = 0x20020002}, {}});
//   mpf.ifd().number(mpf::individualNumber, 1).ratio(mpf::baseline, 77, 1000);
//   Bytes block = mpf.build();  // from the byte-order field on
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "tests/support/tiff_builder.h"

namespace support {

namespace mpf {
inline constexpr std::uint16_t version = 0xB000;
inline constexpr std::uint16_t imageCount = 0xB001;
inline constexpr std::uint16_t entryTable = 0xB002;
inline constexpr std::uint16_t uidList = 0xB003;
inline constexpr std::uint16_t totalFrames = 0xB004;
inline constexpr std::uint16_t individualNumber = 0xB101;
inline constexpr std::uint16_t orientation = 0xB201;
inline constexpr std::uint16_t overlapHorizontal = 0xB202;
inline constexpr std::uint16_t overlapVertical = 0xB203;
inline constexpr std::uint16_t viewpoint = 0xB204;
inline constexpr std::uint16_t convergence = 0xB205;
inline constexpr std::uint16_t baseline = 0xB206;
inline constexpr std::uint16_t divergence = 0xB207;
inline constexpr std::uint16_t distanceX = 0xB208;
inline constexpr std::uint16_t distanceY = 0xB209;
inline constexpr std::uint16_t distanceZ = 0xB20A;
inline constexpr std::uint16_t yaw = 0xB20B;
inline constexpr std::uint16_t pitch = 0xB20C;
inline constexpr std::uint16_t roll = 0xB20D;
}  // namespace mpf

// One image of the MP Entry table.
struct MpImage {
  std::uint32_t attribute = 0;
  std::uint32_t size = 0;
  std::uint32_t offset = 0;
  std::uint16_t dependent1 = 0;
  std::uint16_t dependent2 = 0;
};

class MpfBuilder {
 public:
  explicit MpfBuilder(ByteOrder order) : order_(order) {}

  // Begins the next IFD.
  MpfBuilder& ifd() {
    ifds_.emplace_back();
    return *this;
  }
  // A tag whose value stands in its entry. Types do not matter to readers of this format.
  MpfBuilder& number(std::uint16_t tag, std::uint32_t value) { return add(tag, 4, 1, value, {}); }
  MpfBuilder& ratio(std::uint16_t tag, std::uint32_t numerator, std::uint32_t denominator) {
    OrderedBytes out(order_);
    out.u32(numerator);
    out.u32(denominator);
    return add(tag, 5, 1, 0, out.bytes());
  }
  MpfBuilder& images(const std::vector<MpImage>& images) {
    OrderedBytes out(order_);
    for (const MpImage& image : images) {
      out.u32(image.attribute);
      out.u32(image.size);
      out.u32(image.offset);
      out.u16(image.dependent1);
      out.u16(image.dependent2);
    }
    return block(mpf::entryTable, out.bytes());
  }
  // 33 equal characters for each image: 'a', 'b', ...
  MpfBuilder& uids(std::size_t count) {
    Bytes all;
    for (std::size_t image = 0; image < count; ++image) {
      all.insert(all.end(), 33, static_cast<std::uint8_t>('a' + image % 26));
    }
    return block(mpf::uidList, all);
  }
  // A tag whose value lies behind the IFD, or nowhere when at is given.
  MpfBuilder& block(std::uint16_t tag, const Bytes& value) {
    return add(tag, 7, static_cast<std::uint32_t>(value.size()), 0, value);
  }
  // Bytes that follow everything, so that no value ends with the segment.
  MpfBuilder& tail(std::size_t size) {
    tail_ = size;
    return *this;
  }

  // The block from its byte-order field on.
  [[nodiscard]] Bytes build() const {
    OrderedBytes out(order_);
    out.append(bytesOf(order_ == ByteOrder::big ? "MM" : "II"));
    out.u16(42);
    out.u32(ifds_.empty() ? 0 : 8);
    std::size_t start = 8;
    for (std::size_t i = 0; i < ifds_.size(); ++i) {
      const std::size_t end = start + sizeOf(ifds_[i]);
      append(out, ifds_[i], start, i + 1 < ifds_.size() ? end : 0);
      start = end;
    }
    out.pad(start + tail_);
    return out.bytes();
  }

 private:
  struct Entry {
    std::uint16_t tag;
    std::uint16_t type;
    std::uint32_t count;
    std::uint32_t value;
    Bytes block;
  };
  using Ifd = std::vector<Entry>;

  MpfBuilder& add(std::uint16_t tag, std::uint16_t type, std::uint32_t count, std::uint32_t value,
                  const Bytes& block) {
    ifds_.back().push_back({tag, type, count, value, block});
    return *this;
  }
  static std::size_t sizeOf(const Ifd& ifd) {
    std::size_t size = 2 + 12 * ifd.size() + 4;
    for (const Entry& entry : ifd) size += entry.block.size();
    return size;
  }
  static void append(OrderedBytes& out, const Ifd& ifd, std::size_t start, std::size_t next) {
    std::size_t place = start + 2 + 12 * ifd.size() + 4;
    out.u16(static_cast<std::uint32_t>(ifd.size()));
    for (const Entry& entry : ifd) {
      out.u16(entry.tag);
      out.u16(entry.type);
      out.u32(entry.count);
      out.u32(entry.block.empty() ? entry.value : static_cast<std::uint32_t>(place));
      place += entry.block.size();
    }
    out.u32(static_cast<std::uint32_t>(next));
    for (const Entry& entry : ifd) out.append(entry.block);
  }

  ByteOrder order_;
  std::size_t tail_ = 1;
  std::vector<Ifd> ifds_;
};

// The attribute IFD of a later image.
[[nodiscard]] inline Bytes laterMpf(ByteOrder order, std::uint32_t number,
                                    std::uint32_t versionWord = 0x30303130) {
  MpfBuilder later(order);
  later.ifd().number(mpf::version, versionWord).number(mpf::individualNumber, number);
  later.ratio(mpf::baseline, 77, 1000);
  return later.build();
}

// A multi-picture file of that many small pictures of one class and sub-code, each of its own size
// (8 * (k + 1) pixels wide, 8 high) with its own individual number.
class MpoFileBuilder {
 public:
  explicit MpoFileBuilder(std::size_t count, ByteOrder order = ByteOrder::little)
      : order_(order), count_(count), table_(count) {
    for (MpImage& image : table_) image.attribute = 0x00020002;
    streams_.resize(count);
    for (std::size_t k = 0; k < count; ++k) {
      streams_[k].size(static_cast<std::uint32_t>(8 * (k + 1)), 8);
    }
  }

  // The stream's builder, for further segments.
  JpegBuilder& stream(std::size_t k) { return streams_[k]; }
  // Attribute and dependent numbers of the table; size and offset are filled in.
  MpImage& entry(std::size_t k) { return table_[k]; }

  [[nodiscard]] Bytes build() {
    std::vector<Bytes> later;
    for (std::size_t k = 1; k < count_; ++k) {
      JpegBuilder stream = streams_[k];
      later.push_back(stream.mpf(laterMpf(order_, static_cast<std::uint32_t>(k + 1))).build());
    }
    Bytes first = firstStream();
    const std::size_t base = byteOrderOffset(first);
    std::size_t offset = first.size();
    table_[0].size = static_cast<std::uint32_t>(first.size());
    starts_ = {0};
    for (std::size_t k = 1; k < count_; ++k) {
      starts_.push_back(offset);
      table_[k].size = static_cast<std::uint32_t>(later[k - 1].size());
      table_[k].offset = static_cast<std::uint32_t>(offset - base);
      offset += later[k - 1].size();
    }
    Bytes file = firstStream();
    for (const Bytes& stream : later) file.insert(file.end(), stream.begin(), stream.end());
    return file;
  }
  // Where each stream starts in the file that was built.
  [[nodiscard]] const std::vector<std::size_t>& starts() const { return starts_; }

 private:
  [[nodiscard]] Bytes firstStream() const {
    MpfBuilder index(order_);
    index.ifd().number(mpf::version, 0x30303130);
    index.number(mpf::imageCount, static_cast<std::uint32_t>(count_)).images(table_);
    index.ifd().number(mpf::version, 0x30303130).number(mpf::individualNumber, 1);
    JpegBuilder stream = streams_[0];
    return stream.mpf(index.build()).build();
  }
  static std::size_t byteOrderOffset(const Bytes& jpeg) {
    for (const MarkerSegment& segment : segmentsOf(jpeg)) {
      if (segment.marker == 0xE2 && segment.payload[0] == 'M') return segment.payloadOffset + 4;
    }
    return 0;
  }

  ByteOrder order_;
  std::size_t count_;
  std::vector<MpImage> table_;
  std::vector<JpegBuilder> streams_;
  std::vector<std::size_t> starts_;
};

}  // namespace support
