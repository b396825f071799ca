// The EXIF segment that a JPEG file gets when its property record has none.
#include "tests/plugin/file_write_fixture.h"

namespace {

using namespace test;

class FileWriteSegments : public ThumbnailWrite {
 protected:
  void SetUp() override {
    ThumbnailWrite::SetUp();
    lengths_ = {5};
    the().streamWrite = [this](host::StreamDescriptor* output, const host::StreamImage&,
                               const host::WriteOptions&) {
      std::memcpy(output->data, "thumb", 5);
      output->length = 5;
      return result_;
    };
    play([this](const host::CodecCallback& callback) { take(callback); });
  }
  // A field of a text, which makes the record when it is the first.
  void addField(host::u16 id, const std::string& text) {
    HGLOBAL memory = GlobalAlloc(GMEM_FIXED, text.size());
    std::memcpy(memory, text.data(), text.size());
    host::PropertyField field = {};
    field.descriptorSize = sizeof field;
    field.valueKind = host::kindText;
    field.fieldId = id;
    field.dataSize = static_cast<host::u32>(text.size());
    field.data = reinterpret_cast<host::u64>(memory);
    append(field);
  }
  void take(const host::CodecCallback& callback) {
    segments_.clear();
    const host::u32 count = countSegments(callback);
    for (host::u32 number = 1; number <= count; ++number) {
      host::SegmentBlock block = {};
      block.index = number;
      EXPECT_EQ(callback.callback(callback.context, 5, 0, &block), 1u);
      segments_.push_back(
          {block.appNumber, {reinterpret_cast<const char*>(block.payload), block.payloadLength}});
    }
  }
  std::vector<std::pair<int, std::string>> segments_;  // that the codec was given last
};

TEST_F(FileWriteSegments, FieldsAndThumbnailBecomeASegmentBehindTheKeptOnes) {
  addField(4006, "Maker");
  addRaw(7, "seven");
  EXPECT_EQ(write(), 1);
  ASSERT_EQ(segments_.size(), 2u);
  EXPECT_EQ(segments_[0], (std::pair<int, std::string>{7, "seven"}));
  EXPECT_EQ(segments_[1].first, 1);
  const std::string& payload = segments_[1].second;
  EXPECT_EQ(payload.substr(0, 8), std::string("Exif\0\0II", 8));
  EXPECT_EQ(payload.substr(payload.size() - 5), "thumb");
  EXPECT_NE(payload.find("Maker"), std::string::npos);
}

TEST_F(FileWriteSegments, APlaceBehindTheLastLeavesTheBlockAsItIs) {
  addRaw(7, "seven");
  addRaw(8, "eight");
  play([](const host::CodecCallback& callback) {
    const host::u32 count = countSegments(callback);
    for (const host::u32 number : {count + 1, count, host::u32{0}, host::u32{1}}) {
      host::SegmentBlock block = {};
      block.index = number;
      block.appNumber = 99;
      EXPECT_EQ(callback.callback(callback.context, 5, 0, &block), 1u);
      const bool given = number >= 1 && number <= count;
      EXPECT_EQ(block.payload != nullptr, given) << number;
      EXPECT_EQ(block.appNumber != 99, given) << number;
    }
  });
  EXPECT_EQ(write(), 1);
}

TEST_F(FileWriteSegments, TheThumbnailComesFirstThenTheSegmentThenTheCodec) {
  addField(4006, "Maker");
  EXPECT_EQ(write(), 1);
  EXPECT_EQ(callsOf({"kJpg", "Prop_", "k32GetKavro"}),
            (std::vector<std::string>{"k32GetKavroIniFileName:260", "kJpgStreamWrite",
                                      "Prop_ReAllocFieldSpace:2", "kJpgWrite"}));
}

TEST_F(FileWriteSegments, TheRecordInTheFileDataIsTheOneThatGrew) {
  addField(4006, "Maker");
  EXPECT_EQ(write(), 1);
  const auto* slot = the().reservedSlots.at(0);
  data().with([&](auto& data) {
    EXPECT_EQ(reinterpret_cast<const host::u8*>(slot),
              reinterpret_cast<const host::u8*>(&data) + 738);
  });
  EXPECT_EQ(fieldsOf(data().properties()).back().descriptor.fieldId, 5297);
  EXPECT_TRUE(data().unlocked());
}

TEST_F(FileWriteSegments, ARawExifSegmentStaysTheOnlyOne) {
  addField(4006, "Maker");
  addRaw(1, "its own", 0, host::groupRawSegment, host::fieldExifSegment);
  EXPECT_EQ(write(), 1);
  EXPECT_EQ(segments_, (std::vector<std::pair<int, std::string>>{{1, "its own"}}));
  EXPECT_TRUE(callsOf({"Prop_"}).empty());
}

TEST_F(FileWriteSegments, WithoutAPropertyRecordNoneIsMade) {
  EXPECT_EQ(write(), 1);
  EXPECT_TRUE(segments_.empty());
  EXPECT_EQ(data().properties(), nullptr);
  EXPECT_TRUE(callsOf({"Prop_"}).empty());
}

TEST_F(FileWriteSegments, ARecordOfItsHeaderAloneTakesTheThumbnail) {
  addRaw(7, "seven");
  EXPECT_EQ(write(), 1);
  ASSERT_EQ(segments_.size(), 2u);
  EXPECT_EQ(segments_[1].second.substr(segments_[1].second.size() - 5), "thumb");
}

TEST_F(FileWriteSegments, WithoutAPreviewTheSegmentHasNoThumbnail) {
  for (const auto& [width, height] : {std::pair{0, 3}, std::pair{2, 0}}) {
    SetUp();
    preview(24, width, height);
    addField(4006, "Maker");
    EXPECT_EQ(write(), 1);
    ASSERT_EQ(segments_.size(), 1u);
    // Identifier, header, one entry and its value: no second directory.
    EXPECT_EQ(segments_[0].second.size(), 6u + 10 + 12 + 4 + 5);
  }
}

TEST_F(FileWriteSegments, AFailedThumbnailLeavesTheFields) {
  result_ = 0;
  addField(4006, "Maker");
  EXPECT_EQ(write(), 1);
  ASSERT_EQ(segments_.size(), 1u);
  EXPECT_EQ(segments_[0].second.size(), 6u + 10 + 12 + 4 + 5);
}

TEST_F(FileWriteSegments, ARefusedReservationDoesNotStopTheWrite) {
  addField(4006, "Maker");
  the().refuseReservation = true;
  EXPECT_EQ(write(), 1);
  EXPECT_TRUE(segments_.empty());
}

TEST_F(FileWriteSegments, XmpGoesBehindTheExifSegmentAndNotIntoIt) {
  addField(4006, "Maker");
  addRaw(0, "<x/>", 0, 0, host::fieldXmp);
  platform::LockedGlobal lock(data().properties());
  auto* fields = reinterpret_cast<host::PropertyField*>(static_cast<host::u8*>(lock.address()) + 8);
  *reinterpret_cast<host::u32*>(fields[2].data) = 4;  // the packet's length, not a segment's head
  lock.unlock();
  EXPECT_EQ(write(), 1);
  ASSERT_EQ(segments_.size(), 2u);
  EXPECT_EQ(segments_[0].second.find("<x/>"), std::string::npos);
  EXPECT_EQ(segments_[1], (std::pair<int, std::string>{
                              1, std::string("http://ns.adobe.com/xap/1.0/\0<x/>", 33)}));
}

TEST_F(FileWriteSegments, ASegmentOver65537BytesIsBuiltAndDropped) {
  addField(4006, std::string(70000, 'x'));
  EXPECT_EQ(write(), 1);
  EXPECT_TRUE(segments_.empty());
  EXPECT_EQ(fieldsOf(data().properties()).back().descriptor.fieldId, 5297);
}

}  // namespace
