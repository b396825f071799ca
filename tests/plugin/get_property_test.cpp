// Fetching the property record: when the codec runs, when the file is mapped, and the results.

#include "tests/plugin/plugin.h"
#include "tests/support/scratch_file.h"

namespace {

using namespace test;
using namespace std::string_literals;

const std::string exifPayload = orientationSegment();

class GetProperty : public PluginTest {
 protected:
  void SetUp() override {
    PluginTest::SetUp();
    const std::string content = "12345" + exifPayload;
    file_.write(support::Bytes(content.begin(), content.end()));
    tag(host::jpegTailTag);
    data_.with([this](auto& data) { std::strcpy(data.record.ansiPath, file_.path().c_str()); });
    reported_ = {{1, exifPayload, 5}};
  }
  void TearDown() override { EXPECT_TRUE(data_.unlocked()); }
  void tag(host::u32 value) {
    data_.with([&](auto& data) { data.tail.tag = value; });
  }
  // The codec reports these segments, then the header.
  void play() {
    the().fileRead = [this](const char* path, const host::CodecCallback& callback) {
      path_ = path;
      for (const Segment& segment : reported_) EXPECT_EQ(report(callback, segment), 1u);
      headerAnswer_ = callback.callback(callback.context, 2, 0, nullptr);
      return codecResult_;
    };
  }
  int get(HGLOBAL* out, host::PluginOrdinal ordinal = host::ordinalGetProperty) {
    return get(out, ordinal, data_.handle());
  }
  int get(HGLOBAL* out, host::PluginOrdinal ordinal, HGLOBAL data) {
    play();
    the().calls.clear();
    return entry<host::GetPropertyEntry>(ordinal)(data, out);
  }
  std::vector<int> ids() const { return ids(data_); }
  static std::vector<int> ids(const FileData& data) {
    std::vector<int> ids;
    for (const Field& field : fieldsOf(data.properties())) ids.push_back(field.descriptor.fieldId);
    return ids;
  }
  host::u32 scanned() const {
    return data_.with([](auto& data) { return data.tail.scanned; });
  }

  ScratchFile file_;
  FileData data_;
  std::vector<Segment> reported_;
  std::string path_;
  int codecResult_ = 1;
  host::u32 headerAnswer_ = 0;
};

TEST_F(GetProperty, TheCodecFindsTheSegmentsAndTheFileIsMappedForThem) {
  HGLOBAL out = nullptr;
  EXPECT_EQ(get(&out), 1);
  EXPECT_EQ(out, data_.properties());
  EXPECT_EQ(ids(), (std::vector{3999, 5297, 4009}));
  EXPECT_EQ(path_, file_.path());
  EXPECT_EQ(headerAnswer_, 2u) << "the pixels are left out";
  EXPECT_EQ(scanned(), 1u);
  EXPECT_THAT(the().calls,
              testing::ElementsAre("gfioGetFileSourcePath", "kJpgFileReadEx",
                                   "Prop_ReAllocFieldSpace:1", "Prop_AppendFieldData",
                                   "gfioGetFileSourcePath", "Prop_ReAllocFieldSpace:5"));
}

TEST_F(GetProperty, TheSecondCallAnswersAtOnce) {
  HGLOBAL first = nullptr;
  ASSERT_EQ(get(&first), 1);
  std::remove(file_.path().c_str());
  HGLOBAL second = nullptr;
  EXPECT_EQ(get(&second), 1);
  EXPECT_EQ(second, first);
  EXPECT_THAT(the().calls, testing::ElementsAre("gfioGetFileSourcePath"));
}

TEST_F(GetProperty, TheMpoEntryIsTheSameFunction) {
  HGLOBAL out = nullptr;
  EXPECT_EQ(get(&out, host::ordinalMPOGetProperty), 1);
  EXPECT_EQ(out, data_.properties());
  EXPECT_EQ(ids(), (std::vector{3999, 5297, 4009}));
}

TEST_F(GetProperty, ARecordWhoseSegmentsAreKnownNeedsNoCodec) {
  data_.with([](auto& data) {
    data.tail.exifPresent = 1;
    data.tail.exifOffset = 5;
    data.tail.exifLength = static_cast<host::u32>(exifPayload.size());
  });
  HGLOBAL out = nullptr;
  EXPECT_EQ(get(&out), 1);
  EXPECT_TRUE(callsOf({"kJpg"}).empty());
  EXPECT_EQ(ids(), (std::vector{3999, 4009}));
}

TEST_F(GetProperty, EachOfTheThreeKindsIsAReasonNotToRunTheCodec) {
  for (const std::size_t present : {774u, 786u, 798u}) {
    const FileData data;
    {
      platform::LockedGlobal lock(data.handle());
      auto* bytes = static_cast<host::u8*>(lock.address());
      std::memcpy(bytes + 746, &host::jpegTailTag, 4);
      bytes[present] = 1;
    }
    HGLOBAL out = nullptr;
    the().calls.clear();
    EXPECT_EQ(entry<host::GetPropertyEntry>(host::ordinalGetProperty)(data.handle(), &out), 0);
    EXPECT_TRUE(callsOf({"kJpg"}).empty()) << present;
  }
}

TEST_F(GetProperty, AFileWithoutMetadataIsNotReadAgain) {
  reported_ = {{0, "JFIF\0\1\2"s}, {14, "Adobe\0"s}};
  HGLOBAL out = reinterpret_cast<HGLOBAL>(std::uintptr_t{7});
  EXPECT_EQ(get(&out), 0);
  EXPECT_EQ(scanned(), 1u);
  EXPECT_EQ(data_.properties(), nullptr);
  EXPECT_EQ(get(&out), 0);
  EXPECT_TRUE(callsOf({"kJpg"}).empty());
  EXPECT_TRUE(the().reports.empty());
}

TEST_F(GetProperty, RawFieldsOfAFileWithoutMetadataStay) {
  reported_ = {{5, "something"s}, {2, "ICC_PROFILE\0\1\1profile"s}};
  HGLOBAL out = nullptr;
  EXPECT_EQ(get(&out), 0);
  EXPECT_EQ(ids(), (std::vector{3999, 4701, 4014, 4701}));
}

TEST_F(GetProperty, ThreeIccSegmentsGiveThreeChunksAndThreeRawFields) {
  reported_.clear();
  for (const char number : {'\1', '\2', '\3'}) {
    reported_.push_back({2, "ICC_PROFILE\0"s + number + '\3' + "chunk" + number});
  }
  HGLOBAL out = nullptr;
  EXPECT_EQ(get(&out), 0);
  EXPECT_EQ(ids(), (std::vector{3999, 4014, 4701, 4014, 4701, 4014, 4701}));
  EXPECT_EQ(fieldsOf(data_.properties())[3].block,
            (std::vector<host::u8>{6, 0, 0, 0, 'c', 'h', 'u', 'n', 'k', 2}));
}

TEST_F(GetProperty, ExtendedXmpIsPutTogetherAndAStrayChunkIsDropped) {
  const std::string guid(32, 'G');
  const std::string other(32, 'H');
  const std::string head = "http://ns.adobe.com/xmp/extension/\0"s;
  reported_ = {{1, head + guid + "\0\0\0\x06\0\0\0\0abc"s},
               {1, head + other + "\0\0\0\x06\0\0\0\x03xyz"s},
               {1, head + guid + "\0\0\0\x06\0\0\0\x03"s + "def"}};
  HGLOBAL out = nullptr;
  EXPECT_EQ(get(&out), 0);
  EXPECT_EQ(ids(), (std::vector{3999, 4037, 4701}));
  const std::vector<host::u8> block = fieldsOf(data_.properties())[1].block;
  EXPECT_EQ(std::string(block.begin() + 44, block.end()), "abcdef");
}

TEST_F(GetProperty, AChunkOfExtendedXmpThatIsLongerThanTheWholeIsCut) {
  const std::string head = "http://ns.adobe.com/xmp/extension/\0"s + std::string(32, 'G');
  reported_ = {{1, head + "\0\0\0\x06\0\0\0\0abc"s},
               {1, head + "\0\0\0\x06\0\0\0\x03"s + std::string(60000, 'x')}};
  HGLOBAL out = nullptr;
  EXPECT_EQ(get(&out), 0);
  const std::vector<host::u8> block = fieldsOf(data_.properties())[1].block;
  EXPECT_EQ(std::string(block.begin() + 44, block.end()), "abcxxx");
}

TEST_F(GetProperty, ChunksOfExtendedXmpBehindTheWholeOrWithoutBytesChangeNothing) {
  const std::string head = "http://ns.adobe.com/xmp/extension/\0"s + std::string(32, 'G');
  reported_ = {{1, head + "\0\0\0\x06\0\0\0\0abc"s},
               {1, head + "\0\0\0\x06\0\0\0\x06"s + "xyz"},
               {1, head + "\0\0\0\x06\0\0\0\x03"s}};
  HGLOBAL out = nullptr;
  EXPECT_EQ(get(&out), 0);
  EXPECT_EQ(ids(), (std::vector{3999, 4037, 4701}));
  const std::vector<host::u8> block = fieldsOf(data_.properties())[1].block;
  EXPECT_EQ(std::string(block.begin() + 44, block.end()), "abc\0\0\0"s);
}

TEST_F(GetProperty, ASegmentOfExtendedXmpThatEndsBeforeItsChunkIsJustRaw) {
  reported_ = {{1, "http://ns.adobe.com/xmp/extension/\0"s + std::string(32, 'G') + "\0\0\0"s}};
  HGLOBAL out = nullptr;
  EXPECT_EQ(get(&out), 0);
  EXPECT_EQ(ids(), (std::vector{3999, 4701}));
}

TEST_F(GetProperty, ExtendedXmpOfMoreThanSixtyFourMegabytesIsLeftOut) {
  const std::string head = "http://ns.adobe.com/xmp/extension/\0"s + std::string(32, 'G');
  const auto idsWith = [&](const std::string& fullLength) {
    const FileData data;
    data.with([this](auto& made) {
      made.tail.tag = host::jpegTailTag;
      std::strcpy(made.record.ansiPath, file_.path().c_str());
    });
    reported_ = {{1, head + fullLength + "\0\0\0\0abc"s}};
    HGLOBAL out = nullptr;
    EXPECT_EQ(get(&out, host::ordinalGetProperty, data.handle()), 0);
    return ids(data);
  };
  EXPECT_EQ(idsWith("\4\0\0\0"s), (std::vector{3999, 4037, 4701}));
  EXPECT_EQ(idsWith("\4\0\0\1"s), (std::vector{3999, 4701}));
}

TEST_F(GetProperty, ALengthInFrontOfAValueHasFourBytes) {
  const std::string head = "http://ns.adobe.com/xmp/extension/\0"s + std::string(32, 'G');
  const std::string half(32768 + 16, 'x');
  reported_ = {{1, head + "\0\1\0\x20\0\0\0\0"s + half},
               {1, head + "\0\1\0\x20\0\0\x80\x10"s + half}};
  HGLOBAL out = nullptr;
  EXPECT_EQ(get(&out), 0);
  const std::vector<host::u8> block = fieldsOf(data_.properties())[1].block;
  ASSERT_EQ(block.size(), 4 + 0x10048U);
  EXPECT_EQ((std::vector<host::u8>(block.begin(), block.begin() + 4)),
            (std::vector<host::u8>{0x48, 0, 1, 0}));
}

TEST_F(GetProperty, AMultiPictureRecordMayEndBehindItsScannedWord) {
  constexpr std::size_t flagsBehind = offsetof(host::MpoFileData, list.scanned) + 4;
  for (const std::size_t size : {flagsBehind + 2, flagsBehind + 4}) {
    const FileData data(size);
    {
      platform::LockedGlobal lock(data.handle());
      auto* bytes = static_cast<host::u8*>(lock.address());
      std::strcpy(reinterpret_cast<char*>(bytes) + offsetof(host::FileDataRecord, ansiPath),
                  file_.path().c_str());
      const auto put = [&](std::size_t place, host::u32 value) {
        std::memcpy(bytes + place, &value, sizeof value);
      };
      put(offsetof(host::MpoFileData, tag), host::mpoTailTag);
      put(offsetof(host::MpoFileData, list.exifPresent), 1);
      put(offsetof(host::MpoFileData, list.exifOffset), 5);
      put(offsetof(host::MpoFileData, list.exifLength), static_cast<host::u32>(exifPayload.size()));
      std::memset(bytes + flagsBehind, 0xFF, size - flagsBehind);
    }
    HGLOBAL out = nullptr;
    EXPECT_EQ(get(&out, host::ordinalMPOGetProperty, data.handle()), 1) << size;
    std::vector<host::u8> behind(size - flagsBehind, 0xFF);
    behind[0] = behind[1] = 0;  // the flags of the first entry
    const std::vector<host::u8> bytes = data.bytes();
    EXPECT_EQ(std::vector<host::u8>(bytes.begin() + flagsBehind, bytes.end()), behind) << size;
  }
}

TEST_F(GetProperty, AFailingCodecGivesZeroAndKeepsNothing) {
  for (const int result : {0, -1, -104, 2}) {
    codecResult_ = result;
    HGLOBAL out = reinterpret_cast<HGLOBAL>(std::uintptr_t{7});
    EXPECT_EQ(get(&out), 0) << result;
    EXPECT_EQ(out, reinterpret_cast<HGLOBAL>(std::uintptr_t{7}));
    EXPECT_EQ(scanned(), 0u);
    EXPECT_EQ(data_.properties(), nullptr);
    EXPECT_EQ(data_.with([](auto& data) { return data.tail.exifPresent; }), 0u);
  }
  EXPECT_TRUE(the().reports.empty());
}

TEST_F(GetProperty, MarkerEventsStoreNothing) {
  the().fileRead = [](const char*, const host::CodecCallback& callback) {
    EXPECT_EQ(report(callback, {1, exifPayload, 5}, host::eventMarker), 1u);
    for (const host::u32 event : {0u, 1u, 3u, 6u}) {
      EXPECT_EQ(callback.callback(callback.context, event, 0, nullptr), 1u);
    }
    return 1;
  };
  HGLOBAL out = nullptr;
  EXPECT_EQ(entry<host::GetPropertyEntry>(host::ordinalGetProperty)(data_.handle(), &out), 0);
  EXPECT_EQ(data_.properties(), nullptr);
}

TEST_F(GetProperty, TheWidePathComesBeforeTheAnsiPath) {
  const std::wstring wide = file_.widePath();
  data_.with([&](auto& data) {
    data.record.pathFlags = host::pathFlagWide;
    data.record.widePath = reinterpret_cast<host::u64>(wide.c_str());
    std::strcpy(data.record.ansiPath, "no such file");
  });
  the().fileReadWide = [&wide](const wchar_t* path, const host::CodecCallback& callback) {
    EXPECT_EQ(path, wide);
    return static_cast<int>(report(callback, {1, exifPayload, 5}));
  };
  HGLOBAL out = nullptr;
  EXPECT_EQ(get(&out), 1);
  EXPECT_EQ(ids(), (std::vector{3999, 5297, 4009}));
}

TEST_F(GetProperty, ThePathThatTheHostAnswersComesBeforeTheRecordsName) {
  const std::string path = file_.path();
  data_.with([](auto& data) { std::strcpy(data.record.ansiPath, "no such file"); });
  the().sourcePath = path.c_str();
  HGLOBAL out = nullptr;
  EXPECT_EQ(get(&out), 1);
  EXPECT_EQ(path_, path);
  EXPECT_EQ(ids(), (std::vector{3999, 5297, 4009}));
}

TEST_F(GetProperty, TheRecordsNameDoesWhenTheHostAnswersNoPath) {
  the().sourcePath = nullptr;
  HGLOBAL out = nullptr;
  EXPECT_EQ(get(&out), 1);
  EXPECT_EQ(path_, file_.path());
  EXPECT_EQ(ids(), (std::vector{3999, 5297, 4009}));
}

TEST_F(GetProperty, ARecordsNameWithoutAnEndIsNoPath) {
  data_.with(
      [](auto& data) { std::memset(data.record.ansiPath, 'a', sizeof data.record.ansiPath); });
  the().sourcePath = nullptr;
  HGLOBAL out = nullptr;
  EXPECT_EQ(get(&out), 0);
  EXPECT_TRUE(callsOf({"kJpg"}).empty());
  data_.with([](auto& data) {
    data.tail.exifPresent = 1;
    data.tail.exifOffset = 5;
    data.tail.exifLength = static_cast<host::u32>(exifPayload.size());
  });
  EXPECT_EQ(get(&out), 0);
  EXPECT_EQ(data_.properties(), nullptr);
}

TEST_F(GetProperty, AnUnknownTagOrNoRecordGivesZero) {
  tag(0x11111111);
  HGLOBAL out = nullptr;
  EXPECT_EQ(get(&out), 0);
  EXPECT_TRUE(callsOf({"kJpg"}).empty());
  auto* getProperty = entry<host::GetPropertyEntry>(host::ordinalGetProperty);
  EXPECT_EQ(getProperty(nullptr, &out), 0);
  const FileData small(745);
  EXPECT_EQ(getProperty(small.handle(), &out), 0);
}

TEST_F(GetProperty, WithoutAnOutPlaceTheRecordIsMadeAllTheSame) {
  EXPECT_EQ(get(nullptr), 1);
  EXPECT_EQ(ids(), (std::vector{3999, 5297, 4009}));
  EXPECT_EQ(get(nullptr), 1);
}

TEST_F(GetProperty, AFileThatCannotBeMappedGivesZero) {
  std::remove(file_.path().c_str());
  HGLOBAL out = nullptr;
  EXPECT_EQ(get(&out), 0);
  EXPECT_EQ(out, nullptr);
  EXPECT_EQ(scanned(), 0u);
}

// After a read the metadata has been taken in.
TEST_F(GetProperty, ASuccessfulReadTakesTheMetadataIn) {
  play();
  host::ReadRequest request = {1, {}, 0, {}, 0, 0};
  const auto ignoreRows = [](host::ReadRequest*, host::u64, host::u32, host::u32, host::u32,
                             host::u8**, host::u16, host::i32, host::u32) { return 1; };
  auto* read = entry<host::JpgFileReadEntry>(host::ordinalJpgFileRead);
  codecResult_ = 0;
  EXPECT_EQ(read(0, nullptr, data_.handle(), &request, ignoreRows), 0);
  EXPECT_EQ(data_.properties(), nullptr);
  EXPECT_EQ(scanned(), 0u);
  codecResult_ = 1;
  // The codec and this test's folder: the file is found once the folder is restored.
  EXPECT_EQ(read(0, nullptr, data_.handle(), &request, ignoreRows), 1);
  EXPECT_EQ(ids(), (std::vector{3999, 5297, 4009}));
  EXPECT_EQ(scanned(), 1u);
  HGLOBAL out = nullptr;
  EXPECT_EQ(get(&out), 1);
  EXPECT_TRUE(callsOf({"kJpg"}).empty());
}

}  // namespace
