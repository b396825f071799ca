// What a read keeps of the application segments: fields, places, flags, and what is taken back.
#include "tests/plugin/plugin.h"

namespace {

using namespace test;
using namespace std::string_literals;

const std::string exif = "Exif\0\0II*\0"s;
const std::string xmp = "http://ns.adobe.com/xap/1.0/\0"s;
const std::string extendedXmp = "http://ns.adobe.com/xmp/extension/\0"s;
const std::string icc = "ICC_PROFILE\0\1\3"s;
const std::string heap = "II\x1A\0\0\0HEAPJPGM"s;

int ignoreRows(host::ReadRequest*, host::u64, host::u32, host::u32, host::u32, host::u8**,
               host::u16, host::i32, host::u32) {
  return 1;
}

class SegmentCapture : public PluginTest {
 protected:
  void SetUp() override {
    PluginTest::SetUp();
    tag(data_, host::jpegTailTag);
  }

  static void tag(const FileData& data, host::u32 value) {
    platform::LockedGlobal lock(data.handle());
    std::memcpy(static_cast<host::u8*>(lock.address()) + 746, &value, sizeof value);
    std::strcpy(static_cast<host::FileDataRecord*>(lock.address())->ansiPath, "a.jpg");
  }

  // Reads a file with these segments; the codec's result is the read's unless it fails.
  static int read(const FileData& data, const std::vector<Segment>& segments, int result = 1,
                  host::u32 event = host::eventSegment) {
    the().fileRead = [&](const char*, const host::CodecCallback& callback) {
      for (const Segment& segment : segments) {
        EXPECT_EQ(report(callback, segment, event), 1u);
      }
      return result;
    };
    host::ReadRequest request = {1, {}, 0, {}, 0, 0};
    return entry<host::JpgFileReadEntry>(host::ordinalJpgFileRead)(0, nullptr, data.handle(),
                                                                   &request, ignoreRows);
  }
  int read(const std::vector<Segment>& segments, int result = 1) {
    return read(data_, segments, result);
  }

  // (id, source group, block) of every field behind the header field.
  struct Kept {
    int id, group;
    std::string block;
    bool operator==(const Kept&) const = default;
  };
  static std::vector<Kept> kept(const FileData& data) {
    std::vector<Kept> all;
    for (const Field& field : fieldsOf(data.properties())) {
      if (field.descriptor.fieldId == host::fieldHeader) continue;
      EXPECT_EQ(+field.descriptor.descriptorSize, 88u);
      EXPECT_EQ(+field.descriptor.valueKind, 5);
      all.push_back({field.descriptor.fieldId, field.descriptor.sourceGroup,
                     std::string(field.block.begin(), field.block.end())});
    }
    return all;
  }
  std::vector<Kept> kept() const { return kept(data_); }

  static Kept raw(int id, int app, const std::string& payload) {
    const std::size_t length = payload.size() + 2;
    std::string block{static_cast<char>(0xFF), static_cast<char>(0xE0 + app),
                      static_cast<char>(length >> 8), static_cast<char>(length)};
    return {id, 4701, block + payload};
  }
  static std::string little32(std::uint32_t value) {
    std::string bytes;
    for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(value >> shift);
    return bytes;
  }
  static std::string big32(std::uint32_t value) {
    const std::string bytes = little32(value);
    return {bytes.rbegin(), bytes.rend()};
  }
  std::vector<host::u32> place(std::size_t present) const {
    const auto bytes = data_.bytes();
    return {at<host::u32>(bytes, present), at<host::u32>(bytes, present + 4),
            at<host::u32>(bytes, present + 8)};
  }

  FileData data_;
};

TEST_F(SegmentCapture, EverySegmentKindGetsItsFieldIdAndStaysWhole) {
  const struct {
    host::u16 app;
    std::string payload;
    int id;
  } rows[] = {{0, heap, 5000},
              {0, "JFXX\0"s, 4701},
              {0, "IM\x1A\0\0\0HEAP"s, 4701},
              {1, exif, 5297},
              {1, "Exif\0\1"s, 4701},
              {1, "FPXR"s, 4712},
              {1, "Photoshop 3.0\0"s, 2004},
              {2, "FPXR\0x"s, 4712},
              {2, "Photoshop"s, 2004},
              {2, "MPF\0"s, 4701},
              {3, "anything"s, 4701},
              {12, "Photoshop 3.0\0"s, 4701},
              {13, "Photoshop 3.0\0"s, 2004},
              {13, "PHOTOSHOP"s, 2004},
              {13, "PhotoShop"s, 4701},
              {13, "FPXR"s, 4701},
              {14, "Adobf"s, 4701},
              {15, "x"s, 4701}};
  std::vector<Segment> segments;
  std::vector<Kept> expected;
  for (const auto& row : rows) {
    segments.push_back({row.app, row.payload});
    expected.push_back(raw(row.id, row.app, row.payload));
  }
  EXPECT_EQ(read(segments), 1);
  EXPECT_EQ(kept(), expected);
}

TEST_F(SegmentCapture, BothMarkerEventsKeepASegment) {
  EXPECT_EQ(read(data_, {{3, "four"}}, 1, host::eventMarker), 1);
  EXPECT_EQ(read(data_, {{3, "five"}}, 1, host::eventSegment), 1);
  EXPECT_EQ(kept(), (std::vector{raw(4701, 3, "four"), raw(4701, 3, "five")}));
}

TEST_F(SegmentCapture, ARawFieldIsNamedAfterItsFirstFourBytes) {
  read({{3, "abcdef"}, {4, "xy"}});
  const auto fields = fieldsOf(data_.properties());
  EXPECT_STREQ(fields.at(1).descriptor.name, "abcd");
  EXPECT_STREQ(fields.at(2).descriptor.name, "xy");
}

TEST_F(SegmentCapture, SpaceIsReservedThroughTheRecordsOwnSlotBeforeEachField) {
  read({{3, "a"}, {4, "b"}});
  EXPECT_THAT(callsOf({"Prop_"}),
              testing::ElementsAre("Prop_ReAllocFieldSpace:1", "Prop_AppendFieldData",
                                   "Prop_ReAllocFieldSpace:1", "Prop_AppendFieldData"));
  platform::LockedGlobal lock(data_.handle());
  for (HGLOBAL* slot : the().reservedSlots) {
    EXPECT_EQ(reinterpret_cast<host::u8*>(slot), static_cast<host::u8*>(lock.address()) + 738);
  }
}

TEST_F(SegmentCapture, JfifAndAdobeSetFlagsAndMakeNoField) {
  read({{0, "JFIF\0\1"s}, {14, "Adobe\0d"s}});
  EXPECT_TRUE(kept().empty());
  EXPECT_EQ(at<host::u16>(data_.bytes(), 760), 3);
}

TEST_F(SegmentCapture, SegmentsThatAreNoneAreIgnored) {
  the().fileRead = [&](const char*, const host::CodecCallback& callback) {
    host::u8 payload[4] = {1, 2, 3, 4};
    host::SegmentRecord records[] = {{2, 3, 0, 4, {}, payload},
                                     {1, 3, 0, 0, {}, payload},
                                     {1, 3, 0, -1, {}, payload},
                                     {1, 3, 0, 4, {}, nullptr}};
    for (auto& record : records) {
      EXPECT_EQ(callback.callback(callback.context, 5, 0, &record), 1u);
    }
    return 1;
  };
  host::ReadRequest request = {1, {}, 0, {}, 0, 0};
  entry<host::JpgFileReadEntry>(host::ordinalJpgFileRead)(0, "a.jpg", data_.handle(), &request,
                                                          ignoreRows);
  EXPECT_EQ(data_.properties(), nullptr);
}

TEST_F(SegmentCapture, AnXmpPacketBecomesAFieldBesideItsRawSegment) {
  read({{1, xmp + "<x/>"}});
  EXPECT_EQ(kept(), (std::vector{Kept{4037, 0, little32(4) + "<x/>"}, raw(4701, 1, xmp + "<x/>")}));
}

TEST_F(SegmentCapture, AnXmpSegmentOfOnlyItsSignatureIsJustRaw) {
  read({{1, xmp}});
  EXPECT_EQ(kept(), (std::vector{raw(4701, 1, xmp)}));
}

TEST_F(SegmentCapture, EachIccChunkBecomesItsOwnField) {
  read({{2, icc + "a"}, {2, icc + "bc"}});
  EXPECT_EQ(kept(), (std::vector{Kept{4014, 0, little32(1) + "a"}, raw(4701, 2, icc + "a"),
                                 Kept{4014, 0, little32(2) + "bc"}, raw(4701, 2, icc + "bc")}));
}

TEST_F(SegmentCapture, AnIccSegmentOfFourteenBytesIsJustRaw) {
  read({{2, icc}});
  EXPECT_EQ(kept(), (std::vector{raw(4701, 2, icc)}));
}

TEST_F(SegmentCapture, ExtendedXmpStaysRawChunkByChunk) {
  const std::string guid(32, 'G');
  const std::string first = extendedXmp + guid + big32(6) + big32(0) + "abc";
  const std::string second = extendedXmp + guid + big32(6) + big32(3) + "def";
  read({{1, first}, {1, second}});
  EXPECT_EQ(kept(), (std::vector{raw(4701, 1, first), raw(4701, 1, second)}));
}

TEST_F(SegmentCapture, TheFirstSegmentOfAKindIsNoted) {
  read({{0, heap, 11},
        {0, heap + "x", 22},
        {1, exif, 33},
        {1, exif + "x", 44},
        {13, "Photoshop", 55},
        {13, "Photoshop2", 66}});
  EXPECT_EQ(place(774), (std::vector<host::u32>{1, 11, 14}));
  EXPECT_EQ(place(786), (std::vector<host::u32>{1, 33, 10}));
  EXPECT_EQ(place(798), (std::vector<host::u32>{1, 55, 9}));
}

TEST_F(SegmentCapture, AScannedRecordKeepsNothingButNotesPlacesAndFlags) {
  data_.with([](auto& data) { data.tail.scanned = 1; });
  read({{0, "JFIF\0"s}, {1, exif, 33}, {1, xmp + "<x/>"}, {2, icc + "a"}, {3, "z"}});
  EXPECT_EQ(data_.properties(), nullptr);
  EXPECT_EQ(place(786), (std::vector<host::u32>{1, 33, 10}));
  EXPECT_EQ(at<host::u16>(data_.bytes(), 760), 2);
}

TEST_F(SegmentCapture, ARecordOfAnotherTagKeepsRawFieldsAlone) {
  const FileData other(814);
  tag(other, 0x12345678);
  const auto before = other.bytes();
  read(other, {{0, "JFIF\0"s}, {1, exif}, {1, xmp + "<x/>"}, {2, icc + "a"}, {14, "Adobe"}});
  EXPECT_EQ(kept(other),
            (std::vector{raw(5297, 1, exif), raw(4701, 1, xmp + "<x/>"), raw(4701, 2, icc + "a")}));
  auto after = other.bytes();
  std::fill(after.begin() + 738, after.begin() + 746, host::u8{0});
  EXPECT_EQ(after, before);
}

TEST_F(SegmentCapture, ATaggedRecordBelow814BytesCountsAsUntagged) {
  const FileData shorter(813);
  tag(shorter, host::jpegTailTag);
  read(shorter, {{1, exif}, {2, icc + "a"}});
  EXPECT_EQ(kept(shorter), (std::vector{raw(5297, 1, exif), raw(4701, 2, icc + "a")}));
  EXPECT_EQ(at<host::u32>(shorter.bytes(), 786), 0u);
}

TEST_F(SegmentCapture, AReadThatDoesNotSucceedTakesEverythingBack) {
  for (const int result : {-1, 0, -102}) {
    const auto before = data_.bytes();
    read({{1, exif}, {1, xmp + "<x/>"}, {14, "Adobe"}}, result);
    EXPECT_EQ(data_.bytes(), before) << result;
  }
  EXPECT_EQ(read({{1, exif}}), 1);
  EXPECT_EQ(kept().size(), 1u);
  const auto first = data_.bytes();
  read({{3, "more"}, {13, "Photoshop"}}, -1);
  EXPECT_EQ(kept().size(), 1u) << "fields from before stay";
  auto after = data_.bytes();
  std::memcpy(after.data() + 738, first.data() + 738, 8);  // the handle may have moved
  EXPECT_EQ(after, first);
}

TEST_F(SegmentCapture, WhatCannotBeReservedOrAppendedIsLeftOutSilently) {
  the().refuseReservation = true;
  EXPECT_EQ(read({{1, exif}}), 1);
  EXPECT_EQ(data_.properties(), nullptr);
  the().refuseReservation = false;
  the().refuseAppend = true;
  EXPECT_EQ(read({{3, "x"}}), 1);
  EXPECT_TRUE(kept().empty());
  EXPECT_TRUE(the().reports.empty());
  EXPECT_EQ(place(786), (std::vector<host::u32>{1, 100, 10}));
}

}  // namespace
