// Writing a JPEG file: output, options, thumbnail, events, and what the record says afterwards.
#include "tests/plugin/file_write_fixture.h"

namespace {

using namespace test;

TEST_F(FileWrite, NothingToWriteToIsReported) {
  data().with([](auto& data) { data.record.ansiPath[0] = '\0'; });
  EXPECT_EQ(write(), 0);
  data().with([](auto& data) { std::strcpy(data.record.ansiPath, "/no such folder/x/y.jpg"); });
  EXPECT_EQ(write(), 0);
  const std::vector<int> expected{1004, 1, 890, 891, 1034};
  EXPECT_THAT(reportedErrors(), testing::ElementsAre(expected, expected));
  EXPECT_TRUE(callsOf({"kJpg"}).empty());
}

TEST_F(FileWrite, NullOrShortRecordsGiveZeroWithNothingOpened) {
  auto* write = entry<host::JpgFileWriteEntry>(host::ordinalJpgFileWrite);
  EXPECT_EQ(write(nullptr, nullptr, nullptr, giveRows), 0);
  const FileData shorter(745);
  EXPECT_EQ(write(nullptr, shorter.handle(), nullptr, giveRows), 0);
  EXPECT_EQ(write(nullptr, data().handle(), nullptr, nullptr), 0);
  EXPECT_TRUE(the().calls.empty());
}

TEST_F(FileWrite, WithoutAHandleTheFileIsCreatedAndClosed) {
  play([](auto&) {});
  EXPECT_EQ(write(nullptr), 1);
  EXPECT_TRUE(canReplace(path_));
  for (const int result : {0, -1}) {
    play([](auto&) {}, result);
    write(nullptr);
    EXPECT_TRUE(canReplace(path_)) << result;
  }
}

TEST_F(FileWrite, WithAllOnesTheFileIsCreatedAndLeftOpen) {
  play([](auto&) {});
  EXPECT_EQ(write(INVALID_HANDLE_VALUE), 1);
  DWORD written = 0;
  EXPECT_NE(WriteFile(output_.file, "x", 1, &written, nullptr), 0) << "still open";
  EXPECT_NE(CloseHandle(output_.file), 0);
}

TEST_F(FileWrite, AGivenHandleIsUsedAndLeftAlone) {
  HANDLE file = CreateFileA(path_.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS,
                            FILE_ATTRIBUTE_NORMAL, nullptr);
  ASSERT_NE(file, INVALID_HANDLE_VALUE);
  play([](auto&) {});
  EXPECT_EQ(write(file), 1);
  EXPECT_EQ(+output_.size, 24u);
  EXPECT_EQ(+output_.file, file);
  EXPECT_EQ(output_.write(file, 3, "abc"), 1);
  EXPECT_TRUE(callsOf({"gfio"}).empty()) << "the source path is not asked for";
  EXPECT_NE(CloseHandle(file), 0);
}

TEST_F(FileWrite, TheOutputFunctionAnswersAFailureWithItsCode) {
  play([](auto&) {});
  write();
  HANDLE readOnly = CreateFileA(path_.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  ASSERT_NE(readOnly, INVALID_HANDLE_VALUE);
  EXPECT_EQ(output_.write(readOnly, 3, "abc"), -106);
  CloseHandle(readOnly);
}

TEST_F(FileWrite, CodecResultsBecomeResultsAndReports) {
  const struct {
    int codec, result;
    bool reported;
  } table[] = {{1, 1, false}, {-1, -1, false}, {0, 0, true}, {-109, 0, true}, {2, 0, true}};
  for (const auto& row : table) {
    the().reports.clear();
    play([](auto&) {}, row.codec);
    EXPECT_EQ(write(), row.result);
    if (row.reported) {
      EXPECT_THAT(reportedErrors(), testing::ElementsAre(std::vector{4021, 1, 890, 891, 1203}));
    } else {
      EXPECT_TRUE(the().reports.empty());
    }
    EXPECT_TRUE(data().unlocked());
  }
}

// Options.

TEST_F(FileWrite, ATailsOptionsAreUsedAndThenReplacedByTheSettings) {
  play([](auto&) {});
  EXPECT_EQ(write(), 1);
  EXPECT_EQ(+options_.size, 24u);
  EXPECT_EQ(+options_.quality, 70u);
  EXPECT_EQ(+options_.mode, 1u);
  EXPECT_EQ(+options_.sample, 2u);
  EXPECT_EQ(+options_.jfif, 0u);
  EXPECT_EQ(+options_.reserved20, 0u);
  data().with([](auto& data) {
    EXPECT_EQ(+data.tail.quality, 85u);
    EXPECT_EQ(+data.tail.mode, 0u);
    EXPECT_EQ(+data.tail.sample, 1u);
    EXPECT_EQ(+data.tail.jfif, 0u) << "not touched";
    EXPECT_EQ(+data.record.kind, 5u);
    EXPECT_EQ(+data.record.count572, 1u);
    EXPECT_EQ(+data.record.count576, 1u);
  });
}

TEST_F(FileWrite, AQualityAbove100IsReplacedInTheEncodingAndInTheTail) {
  data().with([](auto& data) { data.tail.quality = 101; });
  play([](auto&) {}, -1);  // a stopped write leaves the tail as the options left it
  write();
  EXPECT_EQ(+options_.quality, 85u);
  data().with([](auto& data) { EXPECT_EQ(+data.tail.quality, 85u); });
  data().with([](auto& data) { data.tail.quality = 100; });
  write();
  EXPECT_EQ(+options_.quality, 100u);
}

TEST_F(FileWrite, ASampleOfFourOrMoreEncodesAsOne) {
  play([](auto&) {}, -1);
  for (const host::u32 sample : {4u, 400u, 0xFFFFFFFFu}) {
    data().with([&](auto& data) { data.tail.sample = sample; });
    write();
    EXPECT_EQ(+options_.sample, 1u);
  }
  data().with([](auto& data) { data.tail.sample = 3; });
  write();
  EXPECT_EQ(+options_.sample, 3u);
}

TEST_F(FileWrite, OnlyATrueColourImageTakesTheSampleSetting) {
  for (const host::u32 colourType : {1u, 32u}) {
    data().with([&](auto& data) {
      data.record.colourType = colourType;
      data.tail.sample = 3;
    });
    play([](auto&) {});
    write();
    data().with([](auto& data) { EXPECT_EQ(+data.tail.sample, 3u); });
  }
}

TEST_F(FileWrite, ARecordWithoutATailGrowsOne) {
  const struct {
    host::u32 colourType, colourSpace, sample;
  } table[] = {{1, 5, 0}, {2, 3, 1}, {32, 1, 0}, {7, 0, 0}};
  for (const std::size_t size : {std::size_t{746}, std::size_t{814}}) {
    for (const auto& row : table) {
      make(size);
      data().with<host::FileDataRecord>([&](auto& record) { record.colourType = row.colourType; });
      play([](auto&) {});
      EXPECT_EQ(write(), 1);
      EXPECT_EQ(+options_.quality, 85u);
      EXPECT_EQ(+options_.sample, 1u);
      EXPECT_EQ(+options_.jfif, 1u);
      const auto bytes = data().bytes();
      ASSERT_EQ(bytes.size(), 814u);
      EXPECT_EQ(at<host::u32>(bytes, 692), 62u);
      EXPECT_EQ(std::memcmp(bytes.data() + 746, "JEPG", 4), 0);
      EXPECT_EQ(at<host::u16>(bytes, 750), 400);
      std::vector<host::u8> tail(62, 0);
      const host::u32 quality = 85;
      std::memcpy(tail.data(), &quality, 4);
      std::memcpy(tail.data() + 4, &row.colourSpace, 4);
      std::memcpy(tail.data() + 14, &row.sample, 4);
      EXPECT_EQ(std::vector<host::u8>(bytes.begin() + 752, bytes.end()), tail) << row.colourType;
    }
  }
}

// Events.

TEST_F(FileWrite, TheHeaderEventGetsTheGeometry) {
  play([](const host::CodecCallback& callback) {
    host::u32 size = 0;
    std::memcpy(&size, callback.context, sizeof size);
    EXPECT_EQ(size, 56u);
    host::ImageHeader header = {};
    EXPECT_EQ(callback.callback(callback.context, 2, 0, &header), 1u);
    const host::u32 words[] = {header.size,
                               header.width,
                               header.height,
                               header.colourSpace,
                               header.densityUnit,
                               header.horizontalResolution,
                               header.verticalResolution,
                               header.components};
    EXPECT_THAT(words, testing::ElementsAre(32, 5, 4, 0, 0, 300, 200, 3));
  });
  EXPECT_EQ(write(), 1);
}

TEST_F(FileWrite, RowsComeFromTheHostOneByOne) {
  rows = {{1, 2, 3, 4, 5, 6}};
  play([](const host::CodecCallback& callback) {
    for (const host::u32 bytesPerPixel : {3u, 4u, 1u}) {
      host::u8 target[7] = {9, 9, 9, 9, 9, 9, 9};
      host::RowBlock block = {40, 2, 5, 4, bytesPerPixel, {}, 6, {}, target};
      EXPECT_EQ(callback.callback(callback.context, 3, 0, &block), 1u);
      EXPECT_THAT(target, testing::ElementsAre(1, 2, 3, 4, 5, 6, 9));
    }
  });
  EXPECT_EQ(write(), 1);
  EXPECT_EQ(contextSeen, &host_);
  EXPECT_EQ(requests,
            (std::vector<Request>{{2, 5, 1, 1, -1, 7}, {2, 5, 1, 1, -2, 15}, {2, 5, 1, 1, -1, 7}}));
}

TEST_F(FileWrite, AHostWithoutRowsStopsTheCodec) {
  const auto expectStop = [](const host::CodecCallback& callback) {
    host::u8 target[6] = {};
    host::RowBlock block = {40, 0, 2, 4, 3, {}, 6, {}, target};
    EXPECT_EQ(static_cast<int>(callback.callback(callback.context, 3, 0, &block)), -1);
  };
  play(expectStop, -1);
  EXPECT_EQ(write(), -1);
  answerInstead = reinterpret_cast<void*>(~std::uintptr_t{0});
  EXPECT_EQ(write(), -1);
  EXPECT_TRUE(the().reports.empty());
}

TEST_F(FileWrite, OtherEventsAreAnsweredWithOne) {
  play([](const host::CodecCallback& callback) {
    host::u8 block[64] = {};
    for (const host::u32 event : {0u, 1u, 6u}) {
      EXPECT_EQ(callback.callback(callback.context, event, 0, block), 1u);
    }
  });
  EXPECT_EQ(write(), 1);
}

// Segments.

TEST_F(FileWrite, WithoutAPropertyRecordThereAreNoSegments) {
  play([](const host::CodecCallback& callback) { EXPECT_EQ(countSegments(callback), 0u); });
  EXPECT_EQ(write(), 1);
}

TEST_F(FileWrite, RawSegmentsAreGivenBackInRecordOrder) {
  addRaw(1, "first");
  addRaw(2, "not raw", 0, 0);
  addRaw(13, "second");
  play([](const host::CodecCallback& callback) {
    EXPECT_EQ(countSegments(callback), 2u);
    const std::pair<int, std::string> expected[] = {{1, "first"}, {13, "second"}};
    for (const host::u32 number : {1u, 2u, 2u, 1u}) {
      host::SegmentBlock block = {};
      block.index = number;
      EXPECT_EQ(callback.callback(callback.context, 5, 0, &block), 1u);
      EXPECT_EQ(+block.kind, 1);
      EXPECT_EQ(+block.appNumber, expected[number - 1].first);
      EXPECT_EQ(std::string(reinterpret_cast<const char*>(block.payload), block.payloadLength),
                expected[number - 1].second);
    }
  });
  EXPECT_EQ(write(), 1);
}

TEST_F(FileWrite, ASegmentWithoutAPayloadIsGivenBack) {
  addRaw(6, "");
  play([](const host::CodecCallback& callback) {
    EXPECT_EQ(countSegments(callback), 1u);
    host::SegmentBlock block = {};
    block.index = 1;
    EXPECT_EQ(callback.callback(callback.context, 5, 0, &block), 1u);
    EXPECT_EQ(+block.appNumber, 6);
    EXPECT_EQ(+block.payloadLength, 0u);
  });
  EXPECT_EQ(write(), 1);
}

TEST_F(FileWrite, ASegmentOver65537BytesOfDataIsDropped) {
  addRaw(1, "largest", 65537);
  addRaw(2, "too large", 65538);
  addRaw(3, "last");
  play([](const host::CodecCallback& callback) {
    EXPECT_EQ(countSegments(callback), 2u);
    host::SegmentBlock block = {};
    block.index = 1;
    callback.callback(callback.context, 5, 0, &block);
    EXPECT_EQ(+block.payloadLength, 65533u);
    block.index = 2;
    callback.callback(callback.context, 5, 0, &block);
    EXPECT_EQ(+block.appNumber, 3);
  });
  EXPECT_EQ(write(), 1);
}

TEST_F(FileWrite, FieldsThatHoldNoSegmentAreLeftOut) {
  addRaw(1, "kept");
  platform::LockedGlobal lock(data().properties());
  auto* fields = reinterpret_cast<host::PropertyField*>(static_cast<host::u8*>(lock.address()) + 8);
  fields[0].sourceGroup = host::groupRawSegment;  // the header field has no block
  fields[0].valueKind = host::kindBlock;
  play([](const host::CodecCallback& callback) { EXPECT_EQ(countSegments(callback), 1u); });
  EXPECT_EQ(write(), 1);
}

// The thumbnail.

TEST_F(ThumbnailWrite, ThePreviewIsAskedForAtOnceAndEncodedTight) {
  EXPECT_EQ(write(), 1);
  EXPECT_EQ(requests, (std::vector<Request>{{0, 2, 3, 0, -1, 7}}));
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
  EXPECT_THAT(words, testing::ElementsAre(48, 2, 3, 3, 0, 71, 73, 3, 6, 18));
  EXPECT_THAT(pixels_,
              testing::ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18));
  EXPECT_EQ(+thumbnailOptions_.size, 0u);
  EXPECT_EQ(+thumbnailOptions_.mode, 0u);
  EXPECT_EQ(+thumbnailOptions_.sample, 1u);
  EXPECT_EQ(+thumbnailOptions_.jfif, 0u);
  EXPECT_EQ(capacities_, std::vector<host::u32>{18});
  EXPECT_EQ(qualities_, std::vector<host::u32>{80});
}

TEST_F(ThumbnailWrite, TheQualityFallsUntilTheLimitAndTheLengthIsNotReset) {
  preview(24, 200, 100);  // 60,000 bytes
  rows.assign(100, std::vector<host::u8>(600, 5));
  lengths_ = {50000, 40000, 35000, 34999};
  EXPECT_EQ(write(), 1);
  EXPECT_EQ(qualities_, (std::vector<host::u32>{80, 79, 78, 77}));
  EXPECT_EQ(capacities_, (std::vector<host::u32>{60000, 50000, 40000, 35000}));
}

TEST_F(ThumbnailWrite, TheCapacityNeverGrowsPastTheBuffer) {
  preview(24, 200, 100);
  rows.assign(100, std::vector<host::u8>(600, 5));
  lengths_ = {0xFFFFFFFF, 10};
  result_ = 0;
  write();
  EXPECT_EQ(capacities_, (std::vector<host::u32>{60000, 60000}));
}

TEST_F(ThumbnailWrite, TheQualityStopsAtEleven) {
  lengths_ = {35000};
  EXPECT_EQ(write(), 1);
  EXPECT_EQ(qualities_.size(), 70u);
  EXPECT_EQ(qualities_.back(), 11u);
}

TEST_F(ThumbnailWrite, AFailingThumbnailIsReportedAndDoesNotStopTheWrite) {
  result_ = 0;
  EXPECT_EQ(write(), 1);
  EXPECT_THAT(reportedErrors(), testing::ElementsAre(std::vector{4021, 1, 1890, 1892, 131}));
  EXPECT_EQ(callsOf({"kJpg"}), (std::vector<std::string>{"kJpgStreamWrite", "kJpgWrite"}));
}

TEST_F(ThumbnailWrite, UnknownSizesAreAskedForAndTheAnswerIgnored) {
  for (const auto& [width, height] :
       {std::pair{-1, -1}, std::pair{2, -1}, std::pair{-1, 3}, std::pair{0x10000, 0x10000}}) {
    requests.clear();
    preview(32, width, height);
    EXPECT_EQ(write(), 1);
    EXPECT_EQ(requests, (std::vector<Request>{{0, static_cast<host::u32>(width),
                                               static_cast<host::u32>(height), 0, -1, 7}}));
  }
  EXPECT_TRUE(callsOf({"kJpgStreamWrite"}).empty());
}

TEST_F(ThumbnailWrite, ASideOfZeroOrNoRowsMakeNoThumbnail) {
  preview(24, 0, 3);
  EXPECT_EQ(write(), 1);
  preview(24, 2, 0);
  EXPECT_EQ(write(), 1);
  EXPECT_TRUE(requests.empty());
  preview(24, 2, 3);
  answerInstead = reinterpret_cast<void*>(~std::uintptr_t{0});
  EXPECT_EQ(write(), 1);
  answerInstead = nullptr;
  rows.clear();
  EXPECT_EQ(write(), 1);
  EXPECT_TRUE(callsOf({"kJpgStreamWrite"}).empty());
}

TEST_F(ThumbnailWrite, BelowEightBitsARowHasAByteAPixel) {
  preview(1, 2, 3);
  the().streamWrite = [](host::StreamDescriptor*, const host::StreamImage& image,
                         const host::WriteOptions&) {
    EXPECT_EQ(+image.bytesPerPixel, 0u);
    EXPECT_EQ(std::vector<host::u8>(image.pixels, image.pixels + 6),
              (std::vector<host::u8>{1, 2, 7, 8, 13, 14}));
    return 0;
  };
  EXPECT_EQ(write(), 1);
  EXPECT_EQ(callsOf({"kJpgStreamWrite"}).size(), 1u);
}

}  // namespace
