// Writing images for a host that answers requests: questions, the file, results, the record after.
#include "tests/mpo/image_write_fixture.h"

namespace {

using namespace test;

TEST_F(MpoImageWrite, NullArgumentsGiveZeroAndOpenNothing) {
  auto* action = entry<host::MPOFIOActionEntry>(host::ordinalMPOFIOAction);
  EXPECT_EQ(action(nullptr, 27, reinterpret_cast<void*>(&onRequest), nullptr, 0), 0);
  EXPECT_EQ(action(data_->handle(), 27, nullptr, nullptr, 0), 0);
  const FileData tooSmall(745);
  EXPECT_EQ(action(tooSmall.handle(), 27, reinterpret_cast<void*>(&onRequest), nullptr, 0), 0);
  EXPECT_TRUE(host_.calls.empty());
  EXPECT_FALSE(scratch_.exists());
}

TEST_F(MpoImageWrite, TheHostIsAskedForCountThenImagesThenRows) {
  EXPECT_EQ(writeAt(0, 3), 1);
  EXPECT_THAT(host_.calls,
              testing::ElementsAre("count", "image 1", "image 2", "image 3", "rows", "rows"));
}

TEST_F(MpoImageWrite, AnotherAnswerToAQuestionIsTheResultAndNothingIsOpened) {
  for (const int answer : {0, -1, 7}) {
    host_ = {};
    host_.countAnswer = answer;
    EXPECT_EQ(write(), answer);
    host_ = {};
    host_.refusedImage = 2;
    host_.refusal = answer;
    EXPECT_EQ(writeAt(0, 3), answer);
    EXPECT_THAT(host_.calls, testing::ElementsAre("count", "image 1", "image 2"));
  }
  EXPECT_FALSE(scratch_.exists());
  EXPECT_TRUE(the().calls.empty());
}

TEST_F(MpoImageWrite, CountsThatCannotBeWrittenGiveZeroAndNothingIsOpened) {
  const struct {
    u32 count, position;
  } rows[] = {{0, 0}, {1, 1}, {3, 3}, {2, 0xFFFFFFFF}, {0xFFFFFFFF, 0}, {5000, 0}, {5000, 4999}};
  for (const auto& row : rows) {
    host_ = {};
    EXPECT_EQ(writeAt(row.position, row.count), 0);
    EXPECT_EQ(host_.calls.size(), 1u);
  }
  EXPECT_FALSE(scratch_.exists());
}

TEST_F(MpoImageWrite, TheLongestIndexThatASegmentHoldsIsWritten) {
  // The head of n images has 66 + 16 n bytes, the attribute IFD 30.
  EXPECT_EQ(writeAt(0, 4089), 1);
  EXPECT_EQ(codec_.segments.back().second.size(), 66u + 16 * 4089 + 30);
  EXPECT_EQ(writeAt(0, 4090), 0);
  EXPECT_EQ(writeAt(4091, 4092), 0) << "its index could not have been written";
}

TEST_F(MpoImageWrite, TheFirstImageMakesTheFileAnew) {
  scratch_.write(Bytes(100000, 7));
  EXPECT_EQ(writeAt(0, 2), 1);
  EXPECT_LT(scratch_.read().size(), 1000u);
  const ReadBack back = readBack();
  EXPECT_EQ(+back.list.imageCount, 2u);
  ASSERT_EQ(back.entries.size(), 2u);
  EXPECT_EQ(+back.entries[0].size, scratch_.read().size());
  EXPECT_EQ(+back.entries[0].fileOffset, 0u);
  EXPECT_EQ(+back.entries[1].size, 0u);
}

TEST_F(MpoImageWrite, LaterImagesAreAppendedAndEntered) {
  std::vector<std::size_t> sizes;
  for (u32 position = 0; position < 3; ++position) {
    EXPECT_EQ(writeAt(position, 3), 1);
    sizes.push_back(scratch_.read().size());
  }
  const Bytes file = scratch_.read();
  const ReadBack back = readBack();
  ASSERT_EQ(back.entries.size(), 3u);
  for (u32 image = 0; image < 3; ++image) {
    const std::size_t start = image == 0 ? 0 : sizes[image - 1];
    EXPECT_EQ(+back.entries[image].fileOffset, start);
    EXPECT_EQ(+back.entries[image].size, sizes[image] - start);
    EXPECT_EQ(file.at(start), 0xFF);
    EXPECT_EQ(file.at(start + 1), 0xD8);
    EXPECT_EQ(+back.entries[image].imageNumber, static_cast<int>(image));
  }
}

TEST_F(MpoImageWrite, ALaterImageDoesNotMakeAFile) {
  EXPECT_EQ(writeAt(1, 2), 0);
  EXPECT_FALSE(scratch_.exists());
  EXPECT_TRUE(the().reports.empty());
  EXPECT_TRUE(callsOf({"kJpg"}).empty());
}

TEST_F(MpoImageWrite, AFileThatCannotBeMadeGivesZeroWithoutAReport) {
  common([](auto& record) { std::strcpy(record.ansiPath, "/no/such/folder/file"); });
  EXPECT_EQ(write(), 0);
  common([](auto& record) { record.ansiPath[0] = '\0'; });
  EXPECT_EQ(write(), 0);
  common([](auto& record) { std::memset(record.ansiPath, 'x', sizeof record.ansiPath); });
  EXPECT_EQ(write(), 0);
  EXPECT_TRUE(the().reports.empty());
  EXPECT_TRUE(callsOf({"kJpg"}).empty());
}

TEST_F(MpoImageWrite, TheWidePathCountsWhenItIsFlaggedAndNotEmpty) {
  const ScratchFile second;
  const std::wstring wide = second.widePath();
  const wchar_t empty[] = L"";
  common([&](auto& record) { record.widePath = reinterpret_cast<u64>(wide.c_str()); });
  EXPECT_EQ(write(), 1);
  EXPECT_FALSE(second.exists()) << "not flagged";
  common([](auto& record) { record.pathFlags = 0xFFFF; });
  std::remove(scratch_.path().c_str());
  EXPECT_EQ(write(), 1);
  EXPECT_TRUE(second.exists());
  EXPECT_FALSE(scratch_.exists());
  common([&](auto& record) { record.widePath = reinterpret_cast<u64>(empty); });
  EXPECT_EQ(write(), 1);
  EXPECT_TRUE(scratch_.exists());
}

// Results.

TEST_F(MpoImageWrite, CodecResultsBecomeResultsAndReports) {
  for (const auto& [codec, result] :
       {std::pair{-1, -1}, std::pair{0, 0}, std::pair{2, 0}, std::pair{-106, 0}}) {
    the().reports.clear();
    codec_.result = codec;
    const Bytes before = data_->bytes();
    EXPECT_EQ(write(), result);
    EXPECT_EQ(reportedErrors().size(), codec == -1 ? 0u : 1u);
    EXPECT_EQ(data_->bytes(), before) << "nothing is recorded";
  }
}

TEST_F(MpoImageWrite, AnIndexThatCannotBeEnteredIsReportedAndTheStreamStays) {
  scratch_.write(bytesOf("not a multi-picture file"));
  EXPECT_EQ(writeAt(1, 2), 0);
  EXPECT_THAT(reportedErrors(), testing::ElementsAre(std::vector{4021, 2, 1890, 1891, 886}));
  EXPECT_GT(scratch_.read().size(), 24u) << "longer than before";
  EXPECT_EQ(data_->bytes().size(), 746u);
}

TEST_F(MpoImageWrite, AnUnmarkedRecordGetsAListsHead) {
  for (const std::size_t size : {746u, 814u, 1009u, 4000u}) {
    make(size);
    common([](auto& record) { record.kind = 77; });
    {
      const platform::LockedGlobal lock(data_->handle());
      ASSERT_TRUE(static_cast<bool>(lock));
      auto* bytes = static_cast<host::u8*>(lock.address());
      for (std::size_t at = 746; at < size; ++at) bytes[at] = 0x55;
    }
    Bytes expected = data_->bytes();
    EXPECT_EQ(write(), 1);
    expected.resize(1009);
    std::memset(expected.data() + 752, 0, 257);
    const struct {
      std::size_t offset;
      u32 value;
    } words[] = {{572, 1}, {576, 1}, {580, 5}, {692, 257}, {746, 0x4D504600}, {786, 72}, {790, 1}};
    for (const auto& word : words) std::memcpy(expected.data() + word.offset, &word.value, 4);
    const host::u16 tailSize = 400;
    std::memcpy(expected.data() + 750, &tailSize, 2);
    EXPECT_EQ(data_->bytes(), expected) << size;
    EXPECT_TRUE(data_->unlocked());
  }
}

TEST_F(MpoImageWrite, AMarkedRecordKeepsItsListAndSize) {
  make(sizeof(host::MpoFileData));
  data_->with<host::MpoFileData>([](auto& data) {
    data.tag = host::mpoTailTag;
    data.list.imageCount = 9;
    data.list.firstImage.resolution = 5;
  });
  Bytes expected = data_->bytes();
  EXPECT_EQ(write(), 1);
  const std::pair<std::size_t, u32> words[] = {{572, 1}, {576, 1}, {580, 5}};
  for (const auto& [offset, value] : words) std::memcpy(expected.data() + offset, &value, 4);
  EXPECT_EQ(data_->bytes(), expected);
}

TEST_F(MpoImageWrite, ThePropertyRecordIsLeftAlone) {
  addRaw(1, bytesOf("Exif"));
  const HGLOBAL before = data_->properties();
  EXPECT_EQ(write(), 1);
  EXPECT_EQ(data_->properties(), before);
}

TEST_F(MpoImageWrite, DescriptionsOfEveryClassReadBack) {
  const struct {
    host::u8 typeClass, subCode;
    u32 kind;
  } classes[] = {{1, 1, 1}, {1, 2, 2}, {2, 1, 3}, {2, 2, 4}, {2, 3, 5}, {3, 0, 6}};
  for (const auto& row : classes) {
    host_.describe = [&](u32 number, MpoImageDesc& image) {
      image.typeClass = row.typeClass;
      image.typeSubCode = row.subCode;
      image.flags = 0x90040000;
      image.attributes.panOrientation = 3;
      image.attributes.baseViewpoint = number;
      std::memset(image.uid, 'a' + static_cast<int>(number), 33);
      if (number == 1) {
        image.dependentParent = image.representative = 1;
        image.dependent1 = 2;
      }
      if (number == 2) image.dependentChild = 1;
    };
    for (u32 position = 0; position < 3; ++position) EXPECT_EQ(writeAt(position, 3), 1);
    const ReadBack back = readBack();
    ASSERT_EQ(back.entries.size(), 3u);
    EXPECT_EQ(+back.list.kind, row.kind);
    EXPECT_EQ(+back.list.totalFrames, 2u);
    EXPECT_EQ(+back.entries[0].dependent1, 2) << "the child's array position";
    EXPECT_EQ(+back.entries[0].representative, 1u);
    EXPECT_EQ(+back.entries[2].dependentChild, 1u);
    EXPECT_EQ(+back.entries[1].uid[0], 'c') << "identifiers go by file order";
    const bool multi = row.typeClass == 2;
    EXPECT_EQ(+back.entries[0].attributes.baseViewpoint, multi ? 1u : 0u);
    EXPECT_EQ(+back.entries[0].flags, multi ? 0x90060000u : 0x00060000u);
  }
}

}  // namespace
