// Describing a multi-picture file: the record's fields, the images' figures, and what is refused.
#include "tests/mpo/scratch_file.h"
#include "tests/mpo/stream_codec.h"
#include "tests/support/mpf_builder.h"

namespace {

using namespace test;
using host::MpoEntry;
using host::MpoFileData;
using host::u16;
using host::u32;
using host::u8;
using support::Bytes;
using support::bytesOf;
using support::JpegBuilder;
using support::MpfBuilder;
using support::MpoFileBuilder;
namespace mpf = support::mpf;

class MpoFileInformation : public PluginTest {
 protected:
  void SetUp() override {
    PluginTest::SetUp();
    codec_.install();
  }

  // Describes a file of that content; the record is this fixture's.
  HGLOBAL describe(const Bytes& content) {
    scratch_.write(content);
    data_ = std::make_unique<FileData>(describeMpo(scratch_.path()));
    return data_->handle();
  }
  template <typename Use>
  void withData(Use use) {
    ASSERT_NE(data_->handle(), nullptr);
    data_->with<MpoFileData>(use);
  }

  StreamCodec codec_;
  ScratchFile scratch_;
  std::unique_ptr<FileData> data_;
};

std::vector<int> failed(int code, int site, int position) {
  return {code, site, 1890, 1891, position};
}

TEST_F(MpoFileInformation, AJpegWithoutTheSegmentGivesNothingAndNoReport) {
  EXPECT_EQ(describe(JpegBuilder().build()), nullptr);
  EXPECT_TRUE(the().calls.empty());
}

TEST_F(MpoFileInformation, AFileThatCannotBeOpenedGivesNothingAndNoReport) {
  EXPECT_EQ(describeMpo(scratch_.path()), nullptr);
  EXPECT_EQ(entry<host::MPOGetFileDataEntry>(host::ordinalMPOGetFileData)(nullptr, nullptr, 0),
            nullptr);
  EXPECT_TRUE(the().calls.empty());
}

TEST_F(MpoFileInformation, TheRecordIsFilled) {
  codec_.progressive = true;
  ASSERT_NE(describe(MpoFileBuilder(2).build()), nullptr);
  const Bytes record = data_->bytes();
  EXPECT_EQ(record.size(), 39793u);
  const struct {
    std::size_t offset;
    u32 value;
  } words[] = {{560, 0x10001},    {572, 1}, {576, 1},   {580, 5},   {584, 0},   {588, 24},
               {592, 8},          {596, 8}, {600, 118}, {604, 119}, {608, 2},   {612, 0},
               {616, 0},          {656, 0}, {664, 0},   {692, 257}, {700, ~0u}, {704, 0},
               {746, 0x4D504600}, {752, 4}, {764, 2},   {776, 1},   {780, 3},   {786, 72},
               {790, 2},          {794, 8}, {798, 8}};
  for (const auto& word : words) EXPECT_EQ(at<u32>(record, word.offset), word.value) << word.offset;
  EXPECT_EQ(at<u16>(record, 690), 0);
  EXPECT_EQ(at<u16>(record, 734), 2);
  EXPECT_EQ(at<u8>(record, 737), 1);
  EXPECT_EQ(at<u16>(record, 750), 400);
  EXPECT_EQ(at<u16>(record, 784), 0x1002) << "JFIF seen, progressive";
  EXPECT_TRUE(data_->unlocked());
}

TEST_F(MpoFileInformation, EveryLaterImageHasItsFiguresAndAttributes) {
  MpoFileBuilder builder(3, support::ByteOrder::big);
  ASSERT_NE(describe(builder.build()), nullptr);
  EXPECT_THAT(codec_.widths, testing::ElementsAre(8, 16, 24));
  withData([&](MpoFileData& data) {
    const host::MpoImageInfo none = {};
    EXPECT_EQ(std::memcmp(&data.entries[0].image, &none, sizeof none), 0)
        << "the first image's figures are the list's";
    for (u32 image = 1; image < 3; ++image) {
      const MpoEntry& entry = data.entries[image];
      EXPECT_EQ(+entry.image.decoded, 1u);
      EXPECT_EQ(+entry.image.colourSpace, 3u);
      EXPECT_EQ(+entry.image.markerFlags, 0) << "later images set no marker flags";
      EXPECT_EQ(+entry.image.resolution, 72u);
      EXPECT_EQ(+entry.image.densityUnit, 2u);
      EXPECT_EQ(+entry.image.width, 8 * (image + 1));
      EXPECT_EQ(+entry.image.height, 8u);
      EXPECT_EQ(+entry.fileOffset, builder.starts()[image]);
      EXPECT_EQ(+entry.imageNumber, static_cast<int>(image));
      EXPECT_EQ(+entry.flags, 0x04030000u);
    }
    EXPECT_EQ(+data.entries[0].imageNumber, 0);
  });
}

TEST_F(MpoFileInformation, OffsetsCountFromTheSegmentWhereverItLies) {
  MpoFileBuilder builder(2);
  builder.stream(0).app(1, Bytes(3000)).app(5, Bytes(60000));
  ASSERT_NE(describe(builder.build()), nullptr);
  withData([&](MpoFileData& data) { EXPECT_EQ(+data.entries[1].fileOffset, builder.starts()[1]); });
}

TEST_F(MpoFileInformation, AChildIsReadAtItsArrayPosition) {
  MpoFileBuilder builder(3);
  builder.entry(0).attribute = 0x80010001;
  builder.entry(0).dependent1 = 2;
  builder.entry(1).attribute = 0x40010001;
  ASSERT_NE(describe(builder.build()), nullptr);
  EXPECT_THAT(codec_.widths, testing::ElementsAre(8, 24, 16));
  withData([&](MpoFileData& data) {
    EXPECT_EQ(+data.list.kind, 1u);
    EXPECT_EQ(+data.entries[0].dependent1, 2);
    EXPECT_EQ(+data.entries[2].dependentChild, 1u);
    EXPECT_EQ(+data.entries[2].image.width, 16u);
  });
}

TEST_F(MpoFileInformation, TheHandleComesBeforeTheNameAndStaysOpen) {
  scratch_.write(MpoFileBuilder(2).build());
  const platform::OpenFile file = scratch_.open();
  auto* describe = entry<host::MPOGetFileDataEntry>(host::ordinalMPOGetFileData);
  const FileData data(describe(file.get(), "no such file", 5));
  ASSERT_NE(data.handle(), nullptr);
  EXPECT_THAT(codec_.widths, testing::ElementsAre(8, 16));
  EXPECT_TRUE(platform::moveTo(file.get(), 0).has_value());
}

TEST_F(MpoFileInformation, TheSegmentIsLookedForFromTheHandlesPosition) {
  const Bytes stream = JpegBuilder().build();
  scratch_.write(support::joined(stream, MpoFileBuilder(1).build()));
  const platform::OpenFile file = scratch_.open();
  auto* describe = entry<host::MPOGetFileDataEntry>(host::ordinalMPOGetFileData);
  EXPECT_EQ(describe(file.get(), nullptr, 0), nullptr);
  platform::moveTo(file.get(), static_cast<host::i64>(stream.size()));
  const FileData data(describe(file.get(), nullptr, 0));
  EXPECT_NE(data.handle(), nullptr);
  EXPECT_THAT(codec_.widths, testing::ElementsAre(24)) << "the codec starts at 0";
}

TEST_F(MpoFileInformation, Action28DescribesAWidePathOrAHandle) {
  scratch_.write(MpoFileBuilder(2).build());
  auto* action = entry<host::MPOFIOActionEntry>(host::ordinalMPOFIOAction);
  const std::wstring path = scratch_.widePath();
  host::DescribeParameters parameters = {0, path.c_str(), 77};
  EXPECT_EQ(action(nullptr, 28, &parameters, nullptr, 0), 1);
  const FileData byPath(reinterpret_cast<HGLOBAL>(parameters.result));
  EXPECT_EQ(byPath.bytes().size(), 39793u);

  const platform::OpenFile file = scratch_.open();
  parameters = {reinterpret_cast<host::u64>(file.get()), nullptr, 77};
  EXPECT_EQ(action(nullptr, 28, &parameters, nullptr, 0), 1);
  const FileData byHandle(reinterpret_cast<HGLOBAL>(parameters.result));
  EXPECT_NE(byHandle.handle(), nullptr);

  parameters = {0, L"no such file", 77};
  EXPECT_EQ(action(nullptr, 28, &parameters, nullptr, 0), 0);
  EXPECT_EQ(+parameters.result, 0u);
  parameters = {0, nullptr, 77};
  EXPECT_EQ(action(nullptr, 28, &parameters, nullptr, 0), 0);
  EXPECT_EQ(+parameters.result, 0u);
  EXPECT_EQ(action(nullptr, 28, nullptr, nullptr, 0), 0);
  EXPECT_TRUE(the().reports.empty());
}

TEST_F(MpoFileInformation, OtherActionsGiveZero) {
  auto* action = entry<host::MPOFIOActionEntry>(host::ordinalMPOFIOAction);
  host::DescribeParameters parameters = {0, nullptr, 77};
  for (const int code : {0, 25, 29, -1}) {
    EXPECT_EQ(action(nullptr, code, &parameters, nullptr, 1), 0);
  }
  EXPECT_EQ(+parameters.result, 77u);
  EXPECT_TRUE(the().calls.empty());
}

// Segments besides the index.

TEST_F(MpoFileInformation, PlacesAndFieldsAreTheFirstImages) {
  MpoFileBuilder builder(2);
  for (std::size_t k = 0; k < 2; ++k) {
    builder.stream(k).exif(bytesOf("II*\0")).xmp(bytesOf("<x/>")).icc(1, 1, bytesOf("profile"));
    builder.stream(k).photoshop(bytesOf("8BIM")).app(7, bytesOf("seven"));
    builder.stream(k).cameraHeap(bytesOf(std::string_view("II\x1a\0\0\0HEAPCCDR", 14)));
    builder.stream(k).adobe(0);
  }
  const Bytes file = builder.build();
  ASSERT_NE(describe(file), nullptr);
  const Bytes record = data_->bytes();
  const auto payloadAt = [&](unsigned marker, std::string_view start) {
    for (const support::MarkerSegment& segment : support::segmentsOf(file)) {
      const Bytes begin = bytesOf(start);
      if (segment.marker == marker &&
          std::equal(begin.begin(), begin.end(), segment.payload.begin())) {
        return std::pair(static_cast<u32>(segment.payloadOffset),
                         static_cast<u32>(segment.payload.size()));
      }
    }
    return std::pair(0u, 0u);
  };
  const struct {
    std::size_t present, offset, length;
    std::pair<u32, u32> place;
  } places[] = {{802, 818, 822, payloadAt(0xE0, "II")},
                {826, 842, 846, payloadAt(0xE1, "Exif")},
                {850, 866, 870, payloadAt(0xED, "Photoshop")}};
  for (const auto& place : places) {
    EXPECT_EQ(at<u32>(record, place.present), 1u);
    EXPECT_EQ(at<u32>(record, place.offset), place.place.first);
    EXPECT_EQ(at<u32>(record, place.length), place.place.second);
  }
  EXPECT_EQ(at<u16>(record, 784), 3) << "Adobe and JFIF";
  EXPECT_EQ(at<u32>(record, 874), 0u) << "not scanned yet";
  std::vector<int> ids;
  for (const Field& field : fieldsOf(data_->properties())) ids.push_back(field.descriptor.fieldId);
  EXPECT_THAT(ids, testing::ElementsAre(3999, 4037, 4014)) << "nothing raw, nothing of image 2";
}

TEST_F(MpoFileInformation, ExtendedXmpMakesNoField) {
  MpoFileBuilder builder(1);
  builder.stream(0).extendedXmp(std::string(32, 'G'), 10, 0, bytesOf("0123456789"));
  ASSERT_NE(describe(builder.build()), nullptr);
  EXPECT_EQ(data_->properties(), nullptr);
}

// Codec results.

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

TEST_F(MpoFileInformation, ComponentsDecideTheColourType) {
  const struct {
    u32 components, colourType, bits;
    int code;
  } rows[] = {{1, 32, 8, -1}, {2, 0, 16, -1}, {3, 2, 24, -1}, {4, 1, 32, -2}};
  for (const auto& row : rows) {
    codec_.components = row.components;
    ASSERT_NE(describe(MpoFileBuilder(1).build()), nullptr);
    const Bytes record = data_->bytes();
    EXPECT_EQ(at<u32>(record, 608), row.colourType);
    EXPECT_EQ(at<u32>(record, 588), row.bits);
    EXPECT_EQ(at<int>(record, 700), row.code);
  }
  EXPECT_TRUE(the().reports.empty()) << "two components are not refused here";
}

TEST_F(MpoFileInformation, ASmallImageIsItsOwnPreviewALargeOneIsNot) {
  for (const auto& [height, marked] : {std::pair{1999u, true}, std::pair{2000u, false}}) {
    codec_.headerWidth = 2100;
    codec_.headerHeight = height;
    ASSERT_NE(describe(MpoFileBuilder(1).build()), nullptr);
    const Bytes record = data_->bytes();
    EXPECT_EQ(at<int>(record, 620), marked ? -2 : 0);
    EXPECT_EQ(at<u32>(record, 624), marked ? 24u : 0u);
    EXPECT_EQ(at<int>(record, 628), marked ? -1 : 0);
    EXPECT_EQ(at<int>(record, 632), marked ? -1 : 0);
    EXPECT_EQ(at<u32>(record, 636), marked ? 118u : 0u);
    EXPECT_EQ(at<u32>(record, 640), marked ? 119u : 0u);
    EXPECT_EQ(at<u32>(record, 644), marked ? 2u : 0u);
  }
}

TEST_F(MpoFileInformation, AnExifThumbnailIsThePreview) {
  static int reader = 0;
  the().exifBegin = [&](const char* path) {
    EXPECT_EQ(path, scratch_.path());
    return &reader;
  };
  the().exifBeginWide = [](const wchar_t*) { return &reader; };
  the().exifExists = the().thumbnailExists = 1;
  the().thumbnailData = [](host::u64* words) {
    words[0] = 0x4000;
    words[1] = 10;
    return 0;
  };
  the().streamGetInfo = [](auto*, host::ImageHeader* image, auto*) {
    *image = {32, 160, 120, 3, 1, 71, 73, 3};
    return 1;
  };
  ASSERT_NE(describe(MpoFileBuilder(1).build()), nullptr);
  const Bytes record = data_->bytes();
  const u32 expected[] = {2048, 24, 160, 120, 71, 73, 2};
  for (u32 word = 0; word < 7; ++word) EXPECT_EQ(at<u32>(record, 620 + 4 * word), expected[word]);
  EXPECT_THAT(callsOf({"kRExifBegin"}), testing::ElementsAre("kRExifBeginRead"));

  the().calls.clear();
  const std::wstring path = scratch_.widePath();
  host::DescribeParameters parameters = {0, path.c_str(), 0};
  entry<host::MPOFIOActionEntry>(host::ordinalMPOFIOAction)(nullptr, 28, &parameters, nullptr, 0);
  const FileData wide(reinterpret_cast<HGLOBAL>(parameters.result));
  EXPECT_THAT(callsOf({"kRExifBegin"}), testing::ElementsAre("kRExifBeginReadW"));

  the().calls.clear();
  const platform::OpenFile file = scratch_.open();
  const FileData nameless(
      entry<host::MPOGetFileDataEntry>(host::ordinalMPOGetFileData)(file.get(), nullptr, 0));
  EXPECT_TRUE(callsOf({"kRExif"}).empty()) << "no name is known";
  EXPECT_EQ(at<int>(nameless.bytes(), 620), -2);
}

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
