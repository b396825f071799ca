// Reading a JPEG file: sources, events, row delivery, scaling, the thumbnail, results and reports.
#include "tests/plugin/plugin.h"

namespace {

using namespace test;

// One call of the host's row callback.
struct Delivery {
  host::u32 first, width, count;
  host::u16 flags;
  host::i32 colour;
  host::u32 mask;
  std::vector<host::u8> firstByteOfRows;
  bool operator==(const Delivery&) const = default;
};
std::vector<Delivery> delivered;
int hostAnswer = 1;
host::ReadRequest* requestSeen = nullptr;

int takeRows(host::ReadRequest* request, host::u64 zero, host::u32 first, host::u32 width,
             host::u32 count, host::u8** rows, host::u16 flags, host::i32 colour, host::u32 mask) {
  EXPECT_EQ(zero, 0u);
  requestSeen = request;
  Delivery delivery{first, width, count, flags, colour, mask, {}};
  for (host::u32 row = 0; row < count; ++row) delivery.firstByteOfRows.push_back(rows[row][0]);
  delivered.push_back(delivery);
  return hostAnswer;
}

class FileRead : public PluginTest {
 protected:
  void SetUp() override {
    PluginTest::SetUp();
    delivered.clear();
    hostAnswer = 1;
    data_.with([](auto& data) {
      std::strcpy(data.record.ansiPath, "picture.jpg");
      data.record.previewMarker = -2;
      data.tail.tag = host::jpegTailTag;
    });
  }

  int read(const char* path = nullptr) {
    return entry<host::JpgFileReadEntry>(host::ordinalJpgFileRead)(5, path, data_.handle(),
                                                                   &request_, takeRows);
  }
  static host::u32 header(const host::CodecCallback& callback, host::ImageHeaderWithExtra& block) {
    return callback.callback(callback.context, host::eventHeader, 0, &block);
  }
  static host::ImageHeaderWithExtra headerOf(host::u32 width, host::u32 height) {
    return {{56, width, height, 3, 1, 72, 72, 3}, {24, {}, 0, 1, 1, 0}};
  }
  static host::u32 row(const host::CodecCallback& callback, host::u32 index, host::u32 width,
                       host::u32 height, host::u32 bytesPerPixel = 3) {
    std::vector<host::u8> pixels(std::size_t{width} * bytesPerPixel, static_cast<host::u8>(index));
    host::RowBlock block = {
        40, index, width, height, bytesPerPixel, {}, width * bytesPerPixel, {}, pixels.data()};
    return callback.callback(callback.context, host::eventRow, 0, &block);
  }
  // The codec double plays these events.
  template <typename Play>
  void play(Play events, int result = 1) {
    the().fileRead = [=](const char*, const host::CodecCallback& callback) {
      events(callback);
      return result;
    };
  }

  FileData data_;
  host::ReadRequest request_ = {1, {}, 0, {}, 0, 0};
};

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

// Previews scaled here.

class ScaledRead : public FileRead {
 protected:
  void SetUp() override {
    FileRead::SetUp();
    the().shrink = [this](host::u8* target, const host::u8* source, host::u32 sourceWidth,
                          host::u32 bytesPerPixel, const host::u32* map, host::u32 targetWidth) {
      EXPECT_EQ(bytesPerPixel, 3u);
      EXPECT_EQ(targetWidth, request_.targetWidth);
      sourceWidths_.push_back(sourceWidth);
      maps_.emplace_back(map, map + targetWidth);
      target[0] = static_cast<host::u8>(source[0] + 100);
    };
  }
  std::vector<host::u32> sourceWidths_;
  std::vector<std::vector<host::u32>> maps_;
};

TEST_F(ScaledRead, RowsAndColumnsAreDroppedWithTheSameRatio) {
  request_ = {1, {}, 1, {}, 4, 3};
  play([](const host::CodecCallback& callback) {
    for (host::u32 index = 0; index < 8; ++index) EXPECT_EQ(row(callback, index, 10, 8), 1u);
  });
  EXPECT_EQ(read(), 1);
  // Ratio 2.5: rows 0-2, 3-4, 5-7 map to 0, 1, 2.
  std::vector<std::pair<host::u32, int>> rows;
  for (const Delivery& delivery : delivered) {
    rows.emplace_back(delivery.first, delivery.firstByteOfRows.at(0));
    EXPECT_EQ(delivery.width, 4u);
  }
  EXPECT_EQ(rows,
            (std::vector<std::pair<host::u32, int>>{
                {0, 100}, {0, 101}, {0, 102}, {1, 103}, {1, 104}, {2, 105}, {2, 106}, {2, 107}}));
  EXPECT_EQ(maps_.at(0), (std::vector<host::u32>{0, 3, 5, 8}));  // i * 2.5 + 0.5, cut
  EXPECT_EQ(sourceWidths_.at(0), 10u);
}

TEST_F(ScaledRead, RowsBeyondTheTargetHeightAreNotDelivered) {
  request_ = {1, {}, 1, {}, 5, 2};
  play([](const host::CodecCallback& callback) {
    for (host::u32 index = 0; index < 10; ++index) EXPECT_EQ(row(callback, index, 10, 10), 1u);
  });
  read();
  EXPECT_EQ(delivered.size(), 4u);
}

TEST_F(ScaledRead, UpwardsTheMapHoldsWhatTheFormulaGives) {
  request_ = {1, {}, 1, {}, 5, 5};
  play([](const host::CodecCallback& callback) { row(callback, 0, 2, 2); });
  read();
  EXPECT_EQ(maps_.at(0), (std::vector<host::u32>{0, 0, 1, 1, 2}));
}

TEST_F(ScaledRead, TheBlocksAreMadeAnewWhenAWidthChanges) {
  request_ = {1, {}, 1, {}, 4, 9};
  play([](const host::CodecCallback& callback) {
    row(callback, 0, 8, 9);
    row(callback, 1, 12, 9);
    row(callback, 2, 12, 9);
  });
  read();
  EXPECT_EQ(maps_.at(0), (std::vector<host::u32>{0, 2, 4, 6}));
  EXPECT_EQ(maps_.at(1), (std::vector<host::u32>{0, 3, 6, 9}));
  EXPECT_EQ(maps_.at(2), maps_.at(1));
}

TEST_F(ScaledRead, ABlockThatCannotBeHadStopsTheCodecForTheRestOfTheRead) {
  request_ = {1, {}, 1, {}, 0xFFFFFFFF, 2};
  play(
      [&](const host::CodecCallback& callback) {
        host::u8 pixel[3] = {};
        host::RowBlock block = {40, 0, 1, 2, 0xFFFFFFFF, {}, 3, {}, pixel};
        EXPECT_EQ(static_cast<int>(callback.callback(callback.context, 3, 0, &block)), -102);
        request_.targetWidth = 4;
        EXPECT_EQ(static_cast<int>(row(callback, 0, 8, 2)), -102);
      },
      -102);
  EXPECT_EQ(read(), 0);
  EXPECT_TRUE(delivered.empty());
}

// The EXIF thumbnail.

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
