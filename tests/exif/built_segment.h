// A segment that the builder made, taken apart again.
#pragma once

#include "exif/segment_builder.h"
#include "tests/exif/exif_test.h"

namespace test {

using host::u16;
using host::u32;
using host::u64;

// One entry as it lies in a little-endian directory.
struct WrittenEntry {
  u16 tag, type;
  u32 count, word;
  bool operator==(const WrittenEntry&) const = default;
};
inline void PrintTo(const WrittenEntry& entry, std::ostream* out) {
  *out << std::hex << "tag " << entry.tag << " type " << entry.type << " count " << entry.count
       << " word " << entry.word;
}

struct WrittenDirectory {
  u16 count = 0;
  std::vector<WrittenEntry> entries;  // as many as asked for
  u32 next = 0;
};

class BuiltSegment {
 public:
  explicit BuiltSegment(const StoredField& field) : block_(field.block) {}

  [[nodiscard]] const Bytes& block() const { return block_; }
  [[nodiscard]] platform::ByteReader tiff() const {
    return *platform::ByteReader(block_, platform::ByteOrder::little)
                .sub(10, block_.size() >= 10 ? block_.size() - 10 : 0);
  }
  // The directory at an offset, read as one of so many entries whatever its count says.
  [[nodiscard]] WrittenDirectory directory(u32 offset, std::size_t entries) const {
    WrittenDirectory found;
    found.count = tiff().u16(offset).value_or(0xFFFF);
    u64 at = u64{offset} + 2;
    for (std::size_t index = 0; index < entries; ++index, at += 12) {
      found.entries.push_back({tiff().u16(at).value_or(0), tiff().u16(at + 2).value_or(0),
                               tiff().u32(at + 4).value_or(0), tiff().u32(at + 8).value_or(0)});
    }
    found.next = tiff().u32(at).value_or(0xFFFFFFFF);
    return found;
  }
  [[nodiscard]] std::string text(u32 offset, u32 length) const {
    const auto bytes = tiff().bytes(offset, length);
    return bytes ? std::string(bytes->begin(), bytes->end()) : std::string("(outside)");
  }

 private:
  Bytes block_;
};

// Rows for the fields that the tests write; everything else is unknown.
class BuilderTest : public ReaderTest {
 protected:
  static constexpr u16 hostText = 4006, hostShort = 4009, hostRational = 4013, unknownHost = 4014;
  static constexpr u16 exifText = 5210, exifShort = 5202, gpsText = 5301, gpsByte = 5305;
  static constexpr u16 iptcText = 5601;

  void SetUp() override {
    ReaderTest::SetUp();
    constexpr std::size_t secondary = host::exifPrimaryRows;
    defineWritten(exif_, 0, 0x9003, exifText, 2);
    defineWritten(exif_, 1, 0xA001, exifShort, 3);
    defineWritten(exif_, secondary, 0x010F, hostText, 2);
    defineWritten(exif_, secondary + 1, 0x0112, hostShort, 3);
    defineWritten(exif_, secondary + 2, 0x011A, hostRational, 5);
    defineWritten(gps_, 1, 0x0001, 0, 2);  // the field id of this table's rows is not looked at
    defineWritten(gps_, 5, 0x0005, 0, 1);
    iptc_.set(1, 5, host::kindText, iptcText);
  }

  void build(const Bytes& thumbnail = {}, exif::XmpPlace xmp = exif::XmpPlace::ownSegment) {
    exif::buildSegments(slot_.address(), thumbnail, xmp);
  }
  // The raw segments that were added.
  [[nodiscard]] std::vector<StoredField> segments() const {
    std::vector<StoredField> found;
    for (const StoredField& field : slot_.fields()) {
      if (field.descriptor.sourceGroup == host::groupRawSegment) found.push_back(field);
    }
    return found;
  }
  // The only one.
  [[nodiscard]] BuiltSegment segment() const {
    const std::vector<StoredField> found = segments();
    EXPECT_EQ(found.size(), 1u);
    return BuiltSegment(found.empty() ? StoredField{} : found[0]);
  }
};

}  // namespace test
