// The EXIF segment that an image of a multi-picture file gets when its record has none.
#include "tests/mpo/image_write_fixture.h"

namespace {

using namespace test;

class MpoWriteSegments : public MpoImageWrite {
 protected:
  void SetUp() override {
    MpoImageWrite::SetUp();
    common([](auto& record) {
      record.previewBitsPerPixel = 24;
      record.previewWidth = 4;
      record.previewHeight = 2;
    });
    the().streamWrite = [](host::StreamDescriptor* output, const host::StreamImage&,
                           const host::WriteOptions&) {
      std::memcpy(output->data, "thumb", 5);
      output->length = 5;
      return 1;
    };
  }
  void addText(host::u16 id, const std::string& text) {
    HGLOBAL memory = GlobalAlloc(GMEM_FIXED, text.size());
    std::memcpy(memory, text.data(), text.size());
    host::PropertyField field = {};
    field.descriptorSize = sizeof field;
    field.valueKind = host::kindText;
    field.fieldId = id;
    field.dataSize = static_cast<u32>(text.size());
    field.data = reinterpret_cast<u64>(memory);
    append(field);
  }
  [[nodiscard]] std::vector<int> appNumbers() const {
    std::vector<int> numbers;
    for (const auto& [number, payload] : codec_.segments) numbers.push_back(number);
    return numbers;
  }
};

TEST_F(MpoWriteSegments, FieldsAndThumbnailBecomeASegmentInFrontOfTheMultiPictureOne) {
  addText(4006, "Maker");
  EXPECT_EQ(write(), 1);
  ASSERT_EQ(appNumbers(), (std::vector<int>{1, 2}));
  const std::string payload(codec_.segments[0].second.begin(), codec_.segments[0].second.end());
  EXPECT_EQ(payload.substr(0, 8), std::string("Exif\0\0II", 8));
  EXPECT_NE(payload.find("Maker"), std::string::npos);
  EXPECT_EQ(payload.substr(payload.size() - 5), "thumb");
}

TEST_F(MpoWriteSegments, TheSegmentIsMadeBetweenTheThumbnailAndTheStream) {
  addText(4006, "Maker");
  EXPECT_EQ(write(), 1);
  EXPECT_EQ(callsOf({"kJpg", "Prop_"}),
            (std::vector<std::string>{"kJpgStreamWrite", "Prop_ReAllocFieldSpace:2", "kJpgWrite"}));
}

TEST_F(MpoWriteSegments, ItIsMadeBeforeTheFileIsOpened) {
  addText(4006, "Maker");
  EXPECT_EQ(writeAt(1, 2), 0) << "there is no file to go on with";
  EXPECT_EQ(callsOf({"kJpg", "Prop_"}),
            (std::vector<std::string>{"kJpgStreamWrite", "Prop_ReAllocFieldSpace:2"}));
}

TEST_F(MpoWriteSegments, ARawExifSegmentOrNoRecordIsLeftAsItIs) {
  EXPECT_EQ(write(), 1);
  EXPECT_EQ(appNumbers(), std::vector<int>{2});
  EXPECT_EQ(data_->properties(), nullptr);
  addRaw(1, support::bytesOf("its own"));
  addText(4006, "Maker");
  EXPECT_EQ(write(), 1);
  EXPECT_EQ(appNumbers(), (std::vector<int>{1, 2}));
  EXPECT_EQ(codec_.segments[0].second, support::bytesOf("its own"));
  EXPECT_TRUE(callsOf({"Prop_"}).empty());
}

TEST_F(MpoWriteSegments, EveryImageOfAFileGetsItsOwn) {
  addText(4006, "Maker");
  for (u32 position = 0; position < 2; ++position) {
    EXPECT_EQ(writeAt(position, 2), 1);
    EXPECT_EQ(appNumbers(), (std::vector<int>{1, 2})) << position;
  }
  EXPECT_EQ(callsOf({"Prop_"}).size(), 1u) << "the second write finds the segment of the first";
}

}  // namespace
