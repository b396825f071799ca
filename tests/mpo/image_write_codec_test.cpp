// What the codec is told while an image is written: header, rows, segments, options, the preview.
#include "tests/mpo/image_write_fixture.h"

namespace {

using namespace test;

TEST_F(MpoImageWrite, TheHeaderHasTheDefaultsOfAnUnmarkedRecord) {
  EXPECT_EQ(write(), 1);
  const host::ImageHeader& header = codec_.header;
  const u32 words[] = {header.size,
                       header.width,
                       header.height,
                       header.colourSpace,
                       header.densityUnit,
                       header.horizontalResolution,
                       header.verticalResolution,
                       header.components};
  EXPECT_THAT(words, testing::ElementsAre(32, 5, 2, 0, 1, 72, 72, 3));
}

TEST_F(MpoImageWrite, TheResolutionIsTheRecordsUnlessBothAreZero) {
  for (const auto& [across, down] : {std::pair{300u, 200u}, std::pair{0u, 200u}}) {
    common([&, a = across, d = down](auto& record) {
      record.horizontalResolution = a;
      record.verticalResolution = d;
    });
    EXPECT_EQ(write(), 1);
    EXPECT_EQ(codec_.header.horizontalResolution, across);
    EXPECT_EQ(codec_.header.verticalResolution, down);
  }
}

TEST_F(MpoImageWrite, AMarkedRecordGivesItsDensityUnit) {
  make(sizeof(host::MpoFileData));
  data_->with<host::MpoFileData>([](auto& data) {
    data.tag = host::mpoTailTag;
    data.list.firstImage.densityUnit = 2;
  });
  EXPECT_EQ(write(), 1);
  EXPECT_EQ(codec_.header.densityUnit, 2u);
  EXPECT_EQ(codec_.header.horizontalResolution, 72u);
}

TEST_F(MpoImageWrite, EachRowIsAskedForByItself) {
  EXPECT_EQ(write(), 1);
  ASSERT_EQ(host_.rowRequests.size(), 2u);
  for (u32 row = 0; row < 2; ++row) {
    const host::RowRequest& request = host_.rowRequests[row];
    const u32 words[] = {request.size,     request.width,   request.height,      request.firstRow,
                         request.rowCount, request.samples, request.rowDistance, request.mode};
    EXPECT_THAT(words, testing::ElementsAre(48, 5, 2, row, 1, 3, 16, 7));
    EXPECT_EQ(+request.rows, 0u);
  }
}

TEST_F(MpoImageWrite, FourSamplesHaveTheirOwnMode) {
  for (const u32 bytes : {1u, 3u, 4u}) {
    common([=](auto& record) { record.bitsPerPixel = 8 * bytes; });
    codec_.bytesPerPixel = bytes;
    host_.rowRequests.clear();
    EXPECT_EQ(write(), 1);
    EXPECT_EQ(+host_.rowRequests.at(0).mode, bytes == 4 ? 15u : 7u);
    EXPECT_EQ(+host_.rowRequests.at(0).samples, bytes);
    EXPECT_EQ(+host_.rowRequests.at(0).rowDistance, (5 * bytes + 3) / 4 * 4);
  }
}

TEST_F(MpoImageWrite, RowsThatAreNotGivenStopTheCodec) {
  const struct {
    int answer;
    bool rows;
    int toCodec, result;
  } rows[] = {{0, true, -109, 0}, {2, true, -109, 0}, {1, false, -109, 0}, {-1, true, -1, -1}};
  for (const auto& row : rows) {
    the().reports.clear();
    host_.rowAnswer = row.answer;
    host_.givesRows = row.rows;
    EXPECT_EQ(write(), row.result);
    EXPECT_EQ(codec_.answerToRows, row.toCodec);
    if (row.result == -1) {
      EXPECT_TRUE(the().reports.empty());
    } else {
      EXPECT_THAT(reportedErrors(), testing::ElementsAre(std::vector{4021, 1, 1890, 1891, 871}));
    }
    EXPECT_TRUE(data_->unlocked());
  }
}

TEST_F(MpoImageWrite, KeptSegmentsComeFirstTheNewMpfSegmentLast) {
  addRaw(1, bytesOf("Exif"));
  addRaw(2, support::joined(bytesOf("MPF"), {0, 'x'}));
  addRaw(2, bytesOf("MPF"));
  addRaw(2, bytesOf("MPFX"));
  addRaw(3, support::joined(bytesOf("MPF"), {0}));
  addRaw(5, bytesOf("big"), 65537);
  addRaw(6, bytesOf("too big"), 65538);
  EXPECT_EQ(write(), 1);
  std::vector<int> apps;
  for (const auto& [app, payload] : codec_.segments) apps.push_back(app);
  EXPECT_THAT(apps, testing::ElementsAre(1, 2, 2, 3, 5, 2));
  EXPECT_EQ(codec_.segments[0].second, bytesOf("Exif"));
  EXPECT_EQ(codec_.segments[4].second.size(), 65533u);
  const Bytes& mpf = codec_.segments.back().second;
  EXPECT_EQ(std::string(mpf.begin(), mpf.begin() + 6), std::string("MPF\0II", 6));
}

TEST_F(MpoImageWrite, OptionsAreTheTailsElseTheReloadedSettings) {
  const ScratchFile settings;
  settings.write(bytesOf("[KF_IJPG]\nMode=1\nSample=2\nQuality=33\nJFIF=0\n"));
  the().iniPath = settings.path();
  EXPECT_EQ(write(), 1);
  EXPECT_EQ(codec_.options.size, 24u);
  EXPECT_EQ(codec_.options.quality, 33u);
  EXPECT_EQ(codec_.options.mode, 1u);
  EXPECT_EQ(codec_.options.sample, 2u);
  EXPECT_EQ(codec_.options.jfif, 0u);

  make(sizeof(host::JpegFileData));
  data_->with([](auto& data) {
    data.tail.tag = host::jpegTailTag;
    data.tail.quality = 44;
    data.tail.sample = 9;
    data.tail.jfif = 1;
  });
  EXPECT_EQ(write(), 1);
  EXPECT_EQ(codec_.options.quality, 44u);
  EXPECT_EQ(codec_.options.mode, 0u);
  EXPECT_EQ(codec_.options.sample, 1u);
  EXPECT_EQ(codec_.options.jfif, 1u);
}

// The preview.

TEST_F(MpoImageWrite, APreviewIsAskedForInOneRequestAndMadeIntoAThumbnail) {
  common([](auto& record) {
    record.previewBitsPerPixel = 24;
    record.previewWidth = 7;
    record.previewHeight = 3;
  });
  host::StreamImage image = {};
  Bytes pixels;
  the().streamWrite = [&](auto* output, const host::StreamImage& given, auto&) {
    image = given;
    pixels.assign(given.pixels, given.pixels + given.bufferSize);
    output->length = 5;
    return 1;
  };
  EXPECT_EQ(write(), 1);
  EXPECT_THAT(host_.calls, testing::ElementsAre("count", "image 1", "rows", "rows", "rows"));
  const host::RowRequest& request = host_.rowRequests[0];
  const u32 words[] = {request.size,     request.width,   request.height,      request.firstRow,
                       request.rowCount, request.samples, request.rowDistance, request.mode};
  EXPECT_THAT(words, testing::ElementsAre(48, 7, 3, 0, 3, 3, 21, 7));
  EXPECT_EQ(+image.width, 7u);
  EXPECT_EQ(pixels, Bytes(63, 0x21));
}

TEST_F(MpoImageWrite, ARefusedPreviewOrAFailedThumbnailDoesNotStopTheWrite) {
  common([](auto& record) {
    record.previewBitsPerPixel = 24;
    record.previewWidth = record.previewHeight = 2;
  });
  the().streamWrite = [](auto...) { return 0; };
  EXPECT_EQ(write(), 1);
  EXPECT_THAT(reportedErrors(), testing::ElementsAre(std::vector{4021, 1, 1890, 1892, 131}));
  the().reports.clear();
  common([](auto& record) { record.height = 0; });  // so that only the preview is asked for
  for (const bool pointer : {true, false}) {
    host_.rowAnswer = pointer ? 0 : 1;
    host_.givesRows = pointer;
    EXPECT_EQ(write(), 1);
    EXPECT_TRUE(the().reports.empty());
  }
}

TEST_F(MpoImageWrite, PreviewSizesOfNoneAreNotAskedFor) {
  for (const auto& [width, height] :
       {std::pair{0, 3}, std::pair{3, 0}, std::pair{-1, 3}, std::pair{3, -1}, std::pair{-1, -1}}) {
    common([w = width, h = height](auto& record) {
      record.previewBitsPerPixel = 24;
      record.previewWidth = w;
      record.previewHeight = h;
    });
    host_.rowRequests.clear();
    EXPECT_EQ(write(), 1);
    EXPECT_EQ(host_.rowRequests.size(), 2u);
  }
}

}  // namespace
