// Describing a multi-picture file: how the codec is run over its images, and what is refused.
#include "tests/mpo/file_information_fixture.h"

namespace {

using namespace test;

TEST_F(MpoFileInformation, AStoppedCodecIsASuccessForEveryImage) {
  codec_.resultAfterHeader = -1;
  ASSERT_NE(describe(MpoFileBuilder(3).build()), nullptr);
  withData([](MpoFileData& data) { EXPECT_EQ(+data.entries[2].image.width, 24u); });
  EXPECT_TRUE(the().reports.empty());
}

TEST_F(MpoFileInformation, ACodecFailureIsReportedAndGivesNothing) {
  MpoFileBuilder builder(3);
  builder.stream(0).xmp(bytesOf("<x/>"));
  const Bytes file = builder.build();
  for (const int result : {0, 2, -104}) {
    for (const auto& [read, site, position] :
         {std::tuple{0u, 2, 317}, std::tuple{1u, 3, 349}, std::tuple{2u, 3, 349}}) {
      codec_ = {};
      codec_.failAt = read;
      codec_.failWith = result;
      codec_.install();
      the().reports.clear();
      EXPECT_EQ(describe(file), nullptr);
      EXPECT_THAT(reportedErrors(), testing::ElementsAre(failed(4019, site, position)));
    }
  }
}

TEST_F(MpoFileInformation, ASegmentWhoseAttributesComeTooEarlyStopsTheCodec) {
  MpfBuilder index(support::ByteOrder::little);
  index.ifd().number(mpf::individualNumber, 1).number(mpf::imageCount, 1).images({{}});
  EXPECT_EQ(describe(JpegBuilder().mpf(index.build()).build()), nullptr);
  EXPECT_THAT(reportedErrors(), testing::ElementsAre(failed(4019, 2, 317)));
  EXPECT_TRUE(codec_.widths.empty()) << "stopped before the header";
}

TEST_F(MpoFileInformation, WithoutAHeaderNothingIsDecoded) {
  the().read = [](auto&, auto&) { return -1; };
  ASSERT_NE(describe(MpoFileBuilder(2).build()), nullptr);
  const Bytes record = data_->bytes();
  EXPECT_EQ(at<u32>(record, 776), 0u);
  EXPECT_EQ(at<u32>(record, 588), 0u);
  EXPECT_EQ(at<u32>(record, 764), 0u);
}

TEST_F(MpoFileInformation, HeadersAreAnsweredWithTwoAndOtherEventsWithOne) {
  the().read = [](const host::InputDescriptor&, const host::CodecCallback& callback) {
    host::ImageHeaderWithExtra header = {{56, 5, 6, 1, 0, 72, 72, 1}, {24, {}, 0, 0, 0, 1}};
    EXPECT_EQ(StreamCodec::raise(callback, 2, &header), 2u);
    header.header.size = 32;  // no extra information behind it
    EXPECT_EQ(StreamCodec::raise(callback, 2, &header), 2u);
    host::SegmentRecord xmp = {1, 1, 0, 0, {}, nullptr};
    for (const u32 event : {0u, 1u, 3u, 4u, 5u, 6u}) {
      EXPECT_EQ(StreamCodec::raise(callback, event, &xmp), 1u);
      EXPECT_EQ(StreamCodec::raise(callback, event, nullptr), 1u);
    }
    return 1;
  };
  ASSERT_NE(describe(MpoFileBuilder(2).build()), nullptr);
  const Bytes record = data_->bytes();
  EXPECT_EQ(at<u32>(record, 588), 8u);
  EXPECT_EQ(at<u32>(record, 608), 32u);
  EXPECT_EQ(at<u16>(record, 784), 0);
}

TEST_F(MpoFileInformation, SegmentsOfOtherKindsAreNotParsed) {
  the().read = [](const host::InputDescriptor&, const host::CodecCallback& callback) {
    MpfBuilder index(support::ByteOrder::little);
    index.ifd().number(mpf::imageCount, 5);
    Bytes payload = support::joined({'M', 'P', 'F', 0}, index.build());
    const auto length = static_cast<host::i32>(payload.size());
    const host::SegmentRecord records[] = {{2, 2, 0, length, {}, payload.data()},
                                           {1, 1, 0, length, {}, payload.data()},
                                           {1, 2, 0, 3, {}, payload.data()},
                                           {1, 2, 0, -1, {}, payload.data()},
                                           {1, 2, 0, length, {}, nullptr}};
    for (host::SegmentRecord record : records) {
      EXPECT_EQ(StreamCodec::raise(callback, 5, &record), 1u);
      EXPECT_EQ(StreamCodec::raise(callback, 4, &record), 1u);
    }
    host::SegmentRecord marker = {1, 2, 0, length, {}, payload.data()};
    EXPECT_EQ(StreamCodec::raise(callback, 4, &marker), 1u) << "event 4 stores nothing";
    host::SegmentRecord signatureOnly = {1, 2, 0, 4, {}, payload.data()};
    EXPECT_EQ(StreamCodec::raise(callback, 5, &signatureOnly), 1u);
    return 1;
  };
  ASSERT_NE(describe(MpoFileBuilder(2).build()), nullptr);
  EXPECT_EQ(at<u32>(data_->bytes(), 764), 0u);
}

// One image only.

TEST_F(MpoFileInformation, AnOffsetPastTheEndLeavesTheFirstImageAlone) {
  MpoFileBuilder builder(3);
  const Bytes file = builder.build();
  const std::size_t third = builder.starts()[2];
  // Cut so that the third image starts exactly at the end, then one byte behind its start.
  ASSERT_NE(describe(Bytes(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(third))),
            nullptr);
  withData([](MpoFileData& data) {
    EXPECT_EQ(+data.list.imageCount, 1u);
    EXPECT_EQ(+data.list.totalFrames, 1u);
    EXPECT_EQ(+data.record.imageCount, 1);
    EXPECT_NE(+data.list.entries, 0u);
  });
  EXPECT_THAT(codec_.widths, testing::ElementsAre(8));
  EXPECT_TRUE(the().reports.empty());

  EXPECT_EQ(describe(Bytes(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(third) + 1)),
            nullptr)
      << "inside the file, but no image";
  EXPECT_THAT(reportedErrors(), testing::ElementsAre(failed(4019, 3, 349)));
}

TEST_F(MpoFileInformation, CountsOfNoneAndOneReadTheFirstImageOnly) {
  for (const u32 count : {0u, 1u}) {
    codec_.widths.clear();
    MpfBuilder index(support::ByteOrder::little);
    index.ifd().number(mpf::imageCount, count).images({{0x00020002}});
    ASSERT_NE(describe(JpegBuilder().mpf(index.build()).build()), nullptr);
    EXPECT_EQ(codec_.widths.size(), 1u);
    withData([&](MpoFileData& data) {
      EXPECT_EQ(+data.record.imageCount, count);
      EXPECT_EQ(data.list.entries != 0, count != 0);
    });
  }
}

TEST_F(MpoFileInformation, ACountWithoutATableReadsTheFirstImageOnly) {
  MpfBuilder index(support::ByteOrder::little);
  index.ifd().number(mpf::imageCount, 5);
  ASSERT_NE(describe(JpegBuilder().mpf(index.build()).build()), nullptr);
  EXPECT_EQ(codec_.widths.size(), 1u);
  EXPECT_EQ(at<u16>(data_->bytes(), 734), 5);
}

TEST_F(MpoFileInformation, CountsAboveTheArrayAreCutAndOffsetsMayOverlap) {
  // Every entry points at the one stream that there is; the first image's own segment is read
  // again for each.
  for (const u32 count : {127u, 128u, 65535u}) {
    codec_ = {};
    codec_.install();
    MpfBuilder index(support::ByteOrder::little);
    index.ifd().number(mpf::imageCount, count);
    index.images(std::vector<support::MpImage>(127, {0, 1, 0}));
    JpegBuilder stream;
    stream.mpf(index.build());
    const u32 base = 2 + 18 + 4 + 4;  // behind SOI, JFIF and the segment's head and signature
    Bytes file = stream.build();
    for (std::size_t image = 1; image < 127; ++image) {
      const u32 offset = 0u - base;  // back to the start
      std::memcpy(file.data() + base + 8 + 2 + 24 + 4 + 16 * image + 8, &offset, 4);
    }
    ASSERT_NE(describe(file), nullptr);
    EXPECT_EQ(codec_.widths.size(), 127u);
    EXPECT_EQ(at<u16>(data_->bytes(), 734), 127);
  }
}

TEST_F(MpoFileInformation, WhereNoImageStartsTheFileIsRefused) {
  MpoFileBuilder builder(2);
  Bytes file = builder.build();
  file[builder.starts()[1]] = 0;
  EXPECT_EQ(describe(file), nullptr);
  EXPECT_THAT(reportedErrors(), testing::ElementsAre(failed(4019, 3, 349)));
}

// Colours, previews.

TEST_F(MpoFileInformation, TheCodecIsGivenPiecesOf64KiB) {
  MpoFileBuilder builder(2);
  builder.stream(0).app(9, Bytes(65000, 1)).app(9, Bytes(65000, 2));
  const Bytes file = builder.build();
  ASSERT_NE(describe(file), nullptr);
  EXPECT_THAT(codec_.lengths, testing::ElementsAre(file.size(), file.size() - builder.starts()[1]));
  // A file of exactly one piece ends with an empty, last one.
  Bytes exact = MpoFileBuilder(1).build();
  exact.resize(65536);
  ASSERT_NE(describe(exact), nullptr);
  EXPECT_EQ(codec_.lengths.back(), 65536u);
}

}  // namespace
