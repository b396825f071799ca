// Reading a JPEG file: sources, events, row delivery, results and reports.
#include "tests/plugin/file_read_fixture.h"

namespace {

using namespace test;

TEST_F(FileRead, NullArgumentsGiveZeroWithoutAReport) {
  auto* read = entry<host::JpgFileReadEntry>(host::ordinalJpgFileRead);
  EXPECT_EQ(read(0, "a.jpg", nullptr, &request_, takeRows), 0);
  EXPECT_EQ(read(0, "a.jpg", data_.handle(), nullptr, takeRows), 0);
  EXPECT_EQ(read(0, "a.jpg", data_.handle(), &request_, nullptr), 0);
  const FileData tooSmall(745);
  EXPECT_EQ(read(0, "a.jpg", tooSmall.handle(), &request_, takeRows), 0);
  EXPECT_TRUE(the().calls.empty());
}

TEST_F(FileRead, TheWidePathComesBeforeTheAnsiPathAndThatBeforeTheArgument) {
  wchar_t wide[] = L"wide.jpg";
  data_.with([&](auto& data) {
    data.record.pathFlags = host::pathFlagWide;
    data.record.widePath = reinterpret_cast<host::u64>(wide);
  });
  the().fileReadWide = [](const wchar_t* path, auto&) {
    EXPECT_STREQ(path, L"wide.jpg");
    return 1;
  };
  EXPECT_EQ(read("argument.jpg"), 1);
  EXPECT_THAT(callsOf({"kJpg"}), testing::ElementsAre("kJpgFileReadExW"));

  data_.with([](auto& data) { data.record.pathFlags = 0; });
  std::string used;
  the().fileRead = [&](const char* path, auto&) {
    used = path;
    return 1;
  };
  EXPECT_EQ(read("argument.jpg"), 1);
  EXPECT_EQ(used, "picture.jpg");
  data_.with([](auto& data) { data.record.ansiPath[0] = '\0'; });
  EXPECT_EQ(read("argument.jpg"), 1);
  EXPECT_EQ(used, "argument.jpg");
}

TEST_F(FileRead, NoPathAtAllIsAReadFailure) {
  data_.with([](auto& data) { data.record.ansiPath[0] = '\0'; });
  EXPECT_EQ(read(nullptr), 0);
  EXPECT_TRUE(callsOf({"kJpg"}).empty());
  EXPECT_THAT(reportedErrors(), testing::ElementsAre(std::vector{4020, 1, 890, 891, 521}));
}

TEST_F(FileRead, CodecResultsBecomeResultsAndReports) {
  const struct {
    int codec, result;
    bool reported;
  } rows[] = {{1, 1, false}, {-1, -1, false}, {0, 0, true}, {-102, 0, true}, {2, 0, true}};
  for (const auto& row : rows) {
    the().reports.clear();
    play([](auto&) {}, row.codec);
    EXPECT_EQ(read(), row.result) << row.codec;
    EXPECT_EQ(reportedErrors().size(), row.reported ? 1u : 0u) << row.codec;
    EXPECT_TRUE(data_.unlocked());
  }
}

TEST_F(FileRead, TheTemporaryFolderIsCurrentWhileTheCodecRunsAndOnlyThen) {
  const auto current = [] {
    wchar_t path[260] = {};
    GetCurrentDirectoryW(260, path);
    return std::wstring(path);
  };
  // Folders are compared by making the temporary one current: spellings may differ.
  wchar_t temporary[260] = {};
  GetTempPathW(260, temporary);
  const std::wstring before = current();
  SetCurrentDirectoryW(temporary);
  const std::wstring expected = current();
  SetCurrentDirectoryW(before.c_str());
  ASSERT_NE(before, expected);
  for (const int result : {1, 0, -1}) {
    std::wstring during;
    play([&](auto&) { during = current(); }, result);
    read();
    EXPECT_EQ(during, expected);
    EXPECT_EQ(current(), before);
  }
  request_.fullImage = 0;
  EXPECT_EQ(read(), 0);
  EXPECT_EQ(current(), before);
}

TEST_F(FileRead, RowsGoToTheHostAsTheyStand) {
  play([](const host::CodecCallback& callback) {
    auto block = headerOf(5, 3);
    EXPECT_EQ(header(callback, block), 1u);
    EXPECT_EQ(+block.header.width, 5u);
    for (host::u32 index = 0; index < 3; ++index) EXPECT_EQ(row(callback, index, 5, 3), 1u);
  });
  EXPECT_EQ(read(), 1);
  EXPECT_EQ(requestSeen, &request_);
  EXPECT_EQ(delivered,
            (std::vector<Delivery>{
                {0, 5, 1, 5, -1, 7, {0}}, {1, 5, 1, 1, -1, 7, {1}}, {2, 5, 1, 3, -1, 7, {2}}}));
}

TEST_F(FileRead, AOneRowImageIsFirstAndLast) {
  play([](const host::CodecCallback& callback) { row(callback, 0, 5, 1); });
  read();
  EXPECT_EQ(delivered.at(0).flags, 7);
}

TEST_F(FileRead, ALaterPassIsMarkedOnItsFirstRow) {
  play([](const host::CodecCallback& callback) {
    for (int pass = 0; pass < 3; ++pass) {
      auto block = headerOf(2, 2);
      header(callback, block);
      row(callback, 0, 2, 2);
      row(callback, 1, 2, 2);
    }
  });
  read();
  std::vector<int> flags;
  for (const Delivery& delivery : delivered) flags.push_back(delivery.flags);
  EXPECT_EQ(flags, (std::vector{5, 3, 69, 3, 69, 3}));
}

TEST_F(FileRead, FourBytesPerPixelHaveTheirOwnColourCodeAndMask) {
  for (const host::u32 bytesPerPixel : {1u, 3u, 4u}) {
    delivered.clear();
    play([=](const host::CodecCallback& callback) { row(callback, 1, 2, 9, bytesPerPixel); });
    read();
    EXPECT_EQ(delivered.at(0).colour, bytesPerPixel == 4 ? -2 : -1);
    EXPECT_EQ(delivered.at(0).mask, bytesPerPixel == 4 ? 15u : 7u);
  }
}

TEST_F(FileRead, TheHostsAnswerReachesTheCodecUnchanged) {
  for (const int answer : {1, 0, -1, 7}) {
    hostAnswer = answer;
    play([=](const host::CodecCallback& callback) {
      EXPECT_EQ(static_cast<int>(row(callback, 0, 2, 2)), answer);
    });
    read();
  }
}

TEST_F(FileRead, OtherEventsAndEmptyBlocksAreAnsweredWithOne) {
  play([](const host::CodecCallback& callback) {
    host::u8 block[64] = {};
    for (const host::u32 event : {0u, 1u, 6u, 77u}) {
      EXPECT_EQ(callback.callback(callback.context, event, 0, block), 1u);
    }
    for (const host::u32 event : {2u, 3u, 4u, 5u}) {
      EXPECT_EQ(callback.callback(callback.context, event, 0, nullptr), 1u);
    }
  });
  EXPECT_EQ(read(), 1);
  EXPECT_TRUE(delivered.empty());
}

TEST_F(FileRead, TheDecodeContextStartsWithItsSize) {
  play([](const host::CodecCallback& callback) {
    host::u32 size = 0;
    std::memcpy(&size, callback.context, sizeof size);
    EXPECT_EQ(size, 72u);
  });
  read();
}

// Previews by the codec.

TEST_F(FileRead, APreviewOfAnImageThatIsItsOwnIsAskedOfTheCodec) {
  request_ = {0, {}, 1, {}, 40, 30};
  play([&](const host::CodecCallback& callback) {
    EXPECT_EQ(+request_.preview, -2);
    auto block = headerOf(400, 300);
    header(callback, block);
    EXPECT_EQ(+block.header.width, 40u);
    EXPECT_EQ(+block.header.height, 30u);
    block = headerOf(50, 38);  // what the codec can really do
    header(callback, block);
    EXPECT_EQ(+block.header.width, 50u);
    EXPECT_EQ(row(callback, 0, 50, 38), 1u);
  });
  EXPECT_EQ(read(), 1);
  EXPECT_EQ(+request_.targetWidth, 50u);
  EXPECT_EQ(+request_.targetHeight, 38u);
  EXPECT_EQ(delivered.at(0).width, 50u);
  EXPECT_EQ(delivered.at(0).flags, 69) << "the codec announced the pass a second time";
}

TEST_F(FileRead, ATargetSideOfZeroAsksForFullSizeAndDeliversNothing) {
  for (const auto& [width, height] : {std::pair{0u, 30u}, std::pair{40u, 0u}}) {
    request_ = {1, {}, 1, {}, width, height};
    play([](const host::CodecCallback& callback) {
      for (int pass = 0; pass < 2; ++pass) {
        auto block = headerOf(400, 300);
        header(callback, block);
        EXPECT_EQ(+block.header.width, 400u);
        EXPECT_EQ(+block.header.height, 300u);
        EXPECT_EQ(row(callback, 0, 400, 300), 1u);
      }
    });
    EXPECT_EQ(read(), 1);
    EXPECT_TRUE(delivered.empty());
  }
}

}  // namespace
