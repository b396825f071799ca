// Describing a multi-picture file: the record's fields, the images' figures, the preview.
#include "tests/mpo/file_information_fixture.h"

namespace {

using namespace test;

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

}  // namespace
