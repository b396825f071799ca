// Reading a JPEG file: the EXIF thumbnail.
#include "tests/plugin/file_read_fixture.h"

namespace {

using namespace test;

class ThumbnailRead : public FileRead {
 protected:
  void SetUp() override {
    FileRead::SetUp();
    request_ = {0, {}, 0, {}, 0, 0};
    data_.with([](auto& data) {
      data.record.previewBitsPerPixel = 24;
      data.record.previewWidth = 6;
      data.record.previewHeight = 2;
      data.record.previewHorizontalResolution = 72;
      data.record.previewVerticalResolution = 96;
    });
    static int reader = 0;
    the().exifBegin = [](const char* path) {
      EXPECT_STREQ(path, "picture.jpg");
      return &reader;
    };
    the().exifExists = the().thumbnailExists = 1;
    the().thumbnailData = [](host::u64* words) {
      words[0] = 0x4000;
      words[1] = 555;
      return 0;
    };
    the().streamRead = [this](const host::StreamDescriptor* stream, host::StreamImage* image) {
      stream_ = *stream;
      image_ = *image;
      std::memset(image->pixels, 1, 18);
      std::memset(image->pixels + 18, 2, 18);
      return streamResult_;
    };
  }
  host::StreamDescriptor stream_ = {};
  host::StreamImage image_ = {};
  int streamResult_ = 1;
};

TEST_F(ThumbnailRead, ItArrivesInOneCallAtThePreviewsSize) {
  EXPECT_EQ(read(), 1);
  EXPECT_EQ(+stream_.length, 555u);
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(stream_.data), 0x4000u);
  const host::u32 words[] = {image_.size,
                             image_.width,
                             image_.height,
                             image_.colourSpace,
                             image_.densityUnit,
                             image_.horizontalResolution,
                             image_.verticalResolution,
                             image_.bytesPerPixel,
                             image_.stride,
                             image_.bufferSize};
  EXPECT_THAT(words, testing::ElementsAre(48, 6, 2, 0, 3, 72, 96, 3, 18, 36));
  EXPECT_EQ(delivered, (std::vector<Delivery>{{0, 6, 2, 2, -1, 7, {1, 2}}}));
  EXPECT_THAT(callsOf({"kRExif", "kJpg"}),
              testing::ElementsAre("kRExifBeginRead", "kRExifGetThumbnailData", "kJpgStreamRead",
                                   "kRExifEndRead"));
}

TEST_F(ThumbnailRead, TheHostsAnswerDoesNotMatter) {
  hostAnswer = -1;
  EXPECT_EQ(read(), 1);
}

TEST_F(ThumbnailRead, WithoutAThumbnailNothingIsDeliveredAndNothingReported) {
  the().thumbnailExists = 0;
  EXPECT_EQ(read(), 0);
  the().thumbnailExists = 1;
  the().exifExists = 0;
  EXPECT_EQ(read(), 0);
  the().exifExists = 1;
  the().thumbnailData = [](host::u64*) { return -1; };
  EXPECT_EQ(read(), 0);
  the().exifBegin = [](const char*) { return nullptr; };
  EXPECT_EQ(read(), 0);
  EXPECT_TRUE(delivered.empty());
  EXPECT_TRUE(the().reports.empty());
  EXPECT_EQ(callsOf({"kRExifEndRead"}).size(), 3u);
}

TEST_F(ThumbnailRead, ARefusingCodecGivesZero) {
  streamResult_ = 0;
  EXPECT_EQ(read(), 0);
  EXPECT_TRUE(delivered.empty());
  EXPECT_EQ(callsOf({"kRExifEndRead"}).size(), 1u);
}

TEST_F(ThumbnailRead, PreviewSizesThatCannotBeAPictureDoNotReachTheCodec) {
  const struct {
    host::u32 bits;
    host::i32 width, height;
  } rows[] = {{24, 0, 2}, {24, 6, 0}, {24, -1, -1},        {24, -1, 2},
              {7, 6, 2},  {0, 6, 2},  {24, 0x7FFFFFFF, 2}, {32, 0x10000, 0x10000}};
  for (const auto& row : rows) {
    data_.with([&](auto& data) {
      data.record.previewBitsPerPixel = row.bits;
      data.record.previewWidth = row.width;
      data.record.previewHeight = row.height;
    });
    EXPECT_EQ(read(), 0);
  }
  EXPECT_TRUE(callsOf({"kJpg"}).empty());
  EXPECT_TRUE(the().reports.empty());
}

TEST_F(ThumbnailRead, APreviewOfAnotherMarkerComesFromTheThumbnail) {
  request_.preview = 1;
  data_.with([](auto& data) { data.record.previewMarker = 2048; });
  EXPECT_EQ(read(), 1);
  EXPECT_EQ(+request_.preview, 1);
  EXPECT_EQ(callsOf({"kJpg"}), std::vector<std::string>{"kJpgStreamRead"});
}

}  // namespace
