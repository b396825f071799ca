// The XMP packet as a segment of its own, and when there is one.
#include "exif/xmp_segment.h"

#include "tests/exif/built_segment.h"

namespace {

using namespace test;

// GUID, full length, offset 0 and the joined packet.
Bytes extendedPacket(std::string_view packet) {
  Bytes value(32, 'A');
  for (const u32 number : {static_cast<u32>(packet.size()), 0u}) {
    for (int shift = 24; shift >= 0; shift -= 8) {
      value.push_back(static_cast<host::u8>(number >> shift));
    }
  }
  return support::joined(value, support::bytesOf(packet));
}

class XmpSegment : public BuilderTest {
 protected:
  void addXmp(std::string_view packet) { slot_.addBlock(4037, support::bytesOf(packet)); }

  // The packets of the XMP segments that were built behind the EXIF segment.
  std::vector<std::string> packets() const {
    std::vector<std::string> found;
    const std::string signature = std::string("http://ns.adobe.com/xap/1.0/") + '\0';
    for (const StoredField& field : segments()) {
      const std::string payload = field.text().substr(4);
      if (payload.compare(0, 29, signature) == 0) found.push_back(payload.substr(29));
    }
    return found;
  }
};

TEST_F(XmpSegment, APacketBecomesARawSegmentBehindTheExifSegment) {
  addXmp("<x/>");
  slot_.addText(hostText, "Maker");
  build();
  const std::vector<StoredField> found = segments();
  ASSERT_EQ(found.size(), 2u);
  EXPECT_EQ(slot_.ids(), (std::vector<int>{4037, hostText, 5297, 5297}));
  EXPECT_EQ(found[1].block,
            support::joined({0xFF, 0xE1, 0, 35}, support::bytesOf(std::string_view(
                                                     "http://ns.adobe.com/xap/1.0/\0<x/>", 33))));
  EXPECT_EQ(found[1].size(), 37u);
  EXPECT_EQ(+found[1].descriptor.descriptorSize, 88u);
  EXPECT_EQ(+found[1].descriptor.valueKind, 5);
  EXPECT_EQ(+found[1].descriptor.sourceGroup, 4701);
  EXPECT_EQ(found[1].name(), found[0].name());
  EXPECT_EQ(BuiltSegment(found[0]).directory(8, 1).count, 1) << "no entry in the 0th IFD";
  EXPECT_EQ(found[0].size(), 4u + 6 + 10 + 4 + 12 + 5) << "nor a place for one";
}

TEST_F(XmpSegment, APacketWithoutOtherHostFieldsIsNotMet) {
  addXmp("<x/>");
  build();
  EXPECT_TRUE(segments().empty()) << "neither segment";
  slot_.addText(exifText, "2010:12:02");
  slot_.addText(iptcText, "Title");
  build({1, 2, 3});
  EXPECT_EQ(segments().size(), 1u) << "the EXIF segment alone";
  EXPECT_TRUE(packets().empty());
}

TEST_F(XmpSegment, AnUnknownHostFieldIsEnough) {
  addXmp("<x/>");
  slot_.addBlock(unknownHost, {1, 2, 3});
  build();
  EXPECT_EQ(packets(), std::vector<std::string>{"<x/>"});
}

TEST_F(XmpSegment, TheFirstOfSeveralIsWritten) {
  slot_.addText(hostText, "Maker");
  addXmp("<first/>");
  addXmp("<second/>");
  build();
  EXPECT_EQ(packets(), std::vector<std::string>{"<first/>"});
}

TEST_F(XmpSegment, AnExtendedPacketIsNeverTheStandardOne) {
  slot_.addText(hostText, "Maker");
  slot_.addBlock(4037, extendedPacket("<extended/>"));
  build();
  EXPECT_TRUE(packets().empty());
  addXmp("<x/>");
  slot_.addBlock(4037, extendedPacket("<extended/>"));
  build();
  EXPECT_EQ(packets(), std::vector<std::string>{"<x/>"});
}

TEST_F(XmpSegment, APacketThatOnlyBeginsLikeAnExtendedOneIsOne) {
  slot_.addText(hostText, "Maker");
  Bytes otherLength = extendedPacket("<x/>");
  otherLength.push_back(' ');
  slot_.addBlock(4037, otherLength);
  build();
  EXPECT_EQ(packets().size(), 1u);
}

TEST_F(XmpSegment, AGuidIsOfHexadecimalDigits) {
  slot_.addText(hostText, "Maker");
  for (const char digit : std::string_view("09AFaf")) {
    Bytes extended = extendedPacket("<x/>");
    extended[31] = static_cast<host::u8>(digit);
    slot_.addBlock(4037, extended);
  }
  build();
  EXPECT_TRUE(packets().empty());
  for (const char other : std::string_view("/:@G`g")) {
    PropertySlot slot;
    Bytes packet = extendedPacket("<x/>");
    packet[31] = static_cast<host::u8>(other);
    slot.addBlock(4037, packet);
    EXPECT_EQ(exif::standardPacketOf(slot.fields().front().descriptor)->size(), packet.size())
        << other;
  }
}

TEST_F(XmpSegment, AFieldBelowFiveBytesOrWithoutABlockGivesNone) {
  slot_.addText(hostText, "Maker");
  slot_.addBlock(4037, {});
  host::PropertyField field = {};
  field.fieldId = 4037;
  field.valueKind = host::kindBlock;
  field.dataSize = 50;
  slot_.add(field);
  build();
  EXPECT_EQ(segments().size(), 1u);
  addXmp("x");
  build();
  EXPECT_EQ(packets(), std::vector<std::string>{"x"});
}

TEST_F(XmpSegment, ThePrefixSaysHowLongThePacketIs) {
  slot_.addText(hostText, "Maker");
  host::PropertyField field = {};
  field.fieldId = 4037;
  field.valueKind = host::kindBlock;
  field.dataSize = 10;
  slot_.add(field, {3, 0, 0, 0, '<', 'x', '>', 'y', 'y', 'y'});
  build();
  EXPECT_EQ(packets(), std::vector<std::string>{"<x>"});
}

TEST_F(XmpSegment, APrefixThatLiesReachesToTheEndOfTheBlock) {
  slot_.addText(hostText, "Maker");
  host::PropertyField field = {};
  field.fieldId = 4037;
  field.valueKind = host::kindBlock;
  field.dataSize = 7;
  slot_.add(field, {0xFF, 0xFF, 0xFF, 0xFF, '<', 'x', '>'});
  build();
  EXPECT_EQ(packets(), std::vector<std::string>{"<x>"});
}

TEST_F(XmpSegment, AsAnEntryItIsAHostFieldAndMakesNoSegment) {
  defineWritten(exif_, host::exifPrimaryRows + 5, 0x02BC, 4037, 1);
  addXmp("<xmp/>");
  build({}, exif::XmpPlace::ifd0);
  EXPECT_EQ(segment().directory(8, 1).entries, (std::vector<WrittenEntry>{{0x02BC, 1, 6, 26}}));
  EXPECT_EQ(segment().text(26, 6), "<xmp/>");
}

TEST_F(XmpSegment, WithoutRoomForASecondSegmentTheFirstStays) {
  slot_.addText(hostText, "Maker");
  addXmp("<x/>");
  doubles::reserveFields(slot_.address(), 1);
  the().reserveNothing = true;
  build();
  EXPECT_EQ(segments().size(), 1u);
  EXPECT_TRUE(packets().empty());
}

}  // namespace
