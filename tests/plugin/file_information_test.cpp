// Describing a JPEG file: the record's bytes, the results, the reports and the order of calls.
#include "tests/plugin/plugin.h"

namespace {

using namespace test;

class FileInformation : public PluginTest {
 protected:
  void SetUp() override {
    PluginTest::SetUp();
    the().fileGetInfo = [this](const char*, host::ImageHeader* image,
                               host::ExtraInformation* extra) { return answer(image, extra); };
    the().fileGetInfoWide = [this](const wchar_t*, host::ImageHeader* image,
                                   host::ExtraInformation* extra) { return answer(image, extra); };
  }

  int answer(host::ImageHeader* image, host::ExtraInformation* extra) const {
    EXPECT_EQ(+extra->size, 24u);
    *image = image_;
    *extra = extra_;
    return result_;
  }

  static HGLOBAL describe(const char* path) {
    return entry<host::JpgGetFileDataEntry>(host::ordinalJpgGetFileData)(123, path);
  }
  static HGLOBAL describe(const wchar_t* path) {
    host::DescribeParameters parameters{0, path, 0};
    entry<host::JpgFIOActionEntry>(host::ordinalJpgFIOAction)(0, host::actionDescribe, &parameters);
    return reinterpret_cast<HGLOBAL>(parameters.result);
  }
  static std::vector<host::u8> bytesOf(HGLOBAL handle) { return FileData(handle).bytes(); }

  // A file whose EXIF block has a thumbnail of these figures.
  static void serveThumbnail(host::u32 components) {
    static int reader = 0;
    the().exifBegin = [](const char*) { return &reader; };
    the().exifBeginWide = [](const wchar_t*) { return &reader; };
    the().exifExists = the().thumbnailExists = 1;
    the().thumbnailData = [](host::u64* words) {
      words[0] = 0x1234;
      words[1] = 77;
      return 0;
    };
    the().streamGetInfo = [=](const host::StreamDescriptor* stream, host::ImageHeader* image,
                              host::ExtraInformation*) {
      EXPECT_EQ(+stream->length, 77u);
      EXPECT_EQ(reinterpret_cast<std::uintptr_t>(stream->data), 0x1234u);
      *image = {32, 160, 120, 3, 1, 72, 72, components};
      return 1;
    };
  }

  host::ImageHeader image_{32, 4000, 3000, 3, 1, 300, 240, 3};
  host::ExtraInformation extra_{24, {}, 1, 2, 1, 0};
  int result_ = 1;
};

TEST_F(FileInformation, ARecordHoldsTheAgreedValuesAndZeroElsewhere) {
  const auto bytes = bytesOf(describe("a.jpg"));
  ASSERT_EQ(bytes.size(), 814u);
  const std::pair<std::size_t, host::u32> words[] = {
      {560, 0x10001},    {572, 1},          {576, 1},   {580, 5},   {588, 24},         {592, 4000},
      {596, 3000},       {600, 300},        {604, 240}, {608, 2},   {620, 0xFFFFFFFE}, {624, 24},
      {628, 0xFFFFFFFF}, {632, 0xFFFFFFFF}, {636, 300}, {640, 240}, {644, 2},          {692, 62},
      {700, 0xFFFFFFFF}, {752, 85},         {756, 3},   {762, 1},   {766, 2},          {770, 1}};
  std::vector<host::u8> expected(814, 0);
  for (const auto& [offset, value] : words) {
    EXPECT_EQ(at<host::u32>(bytes, offset), value) << offset;
    std::memcpy(expected.data() + offset, &value, sizeof value);
  }
  std::memcpy(expected.data() + 746, "JEPG", 4);
  expected[750] = 400 & 0xFF;
  expected[751] = 400 >> 8;
  EXPECT_EQ(bytes, expected);
}

TEST_F(FileInformation, BothPathFormsGiveTheSameRecord) {
  EXPECT_EQ(bytesOf(describe("a.jpg")), bytesOf(describe(L"a.jpg")));
}

TEST_F(FileInformation, AProgressiveFileSetsTheTailFlag) {
  extra_.progressive = 3;
  EXPECT_EQ(at<host::u16>(bytesOf(describe("a.jpg")), 760), 0x1000);
}

TEST_F(FileInformation, ComponentsDecideColourTypeBitsAndCode) {
  const struct {
    host::u32 components, colourType, bits;
    host::i32 code;
  } rows[] = {{1, 32, 8, -1}, {3, 2, 24, -1}, {4, 1, 32, -2}};
  for (const auto& row : rows) {
    image_.components = row.components;
    const auto bytes = bytesOf(describe("a.jpg"));
    EXPECT_EQ(at<host::u32>(bytes, 608), row.colourType);
    EXPECT_EQ(at<host::u32>(bytes, 644), row.colourType);
    EXPECT_EQ(at<host::u32>(bytes, 588), row.bits);
    EXPECT_EQ(at<host::u32>(bytes, 624), row.bits);
    EXPECT_EQ(at<host::i32>(bytes, 700), row.code);
  }
}

TEST_F(FileInformation, AnyOtherComponentCountIsRefusedWithAReport) {
  for (const host::u32 components : {0u, 2u, 5u, 0xFFFFFFFFu}) {
    the().reports.clear();
    image_.components = components;
    EXPECT_EQ(describe("a.jpg"), nullptr);
    EXPECT_EQ(describe(L"a.jpg"), nullptr);
    EXPECT_THAT(reportedErrors(), testing::ElementsAre(std::vector{4005, 1, 890, 891, 242},
                                                       std::vector{4005, 1, 890, 891, 371}));
  }
  EXPECT_TRUE(callsOf({"kRExif"}).empty()) << "refused before the thumbnail is looked for";
}

TEST_F(FileInformation, AFileThatTheCodecCannotDescribeGivesAllOnesWithAReport) {
  for (const int result : {0, -1, 2}) {
    the().reports.clear();
    result_ = result;
    EXPECT_EQ(describe("a.jpg"), FileData::allOnes());
    EXPECT_EQ(describe(L"a.jpg"), FileData::allOnes());
    EXPECT_THAT(reportedErrors(), testing::ElementsAre(std::vector{4019, 1, 890, 891, 184},
                                                       std::vector{4019, 1, 890, 891, 314}));
  }
}

TEST_F(FileInformation, ANullPathIsAnUnreadableFileForWhichNobodyIsAsked) {
  EXPECT_EQ(describe(static_cast<const char*>(nullptr)), FileData::allOnes());
  EXPECT_EQ(describe(static_cast<const wchar_t*>(nullptr)), FileData::allOnes());
  EXPECT_TRUE(callsOf({"kJpg", "kRExif"}).empty());
  EXPECT_THAT(reportedErrors(), testing::ElementsAre(std::vector{4019, 1, 890, 891, 184},
                                                     std::vector{4019, 1, 890, 891, 314}));
}

TEST_F(FileInformation, AnMpoExtensionIsLeftToTheMpoFamilyWithoutTouchingAnything) {
  for (const char* path : {"a.mpo", "a.MPO", "dir.jpg\\a.mPo", "dir/a.b.mpo", ".mpo"}) {
    EXPECT_EQ(describe(path), FileData::allOnes()) << path;
  }
  for (const wchar_t* path : {L"a.mpo", L"dir.jpg\\a.MPO", L"dir/a.Mpo"}) {
    EXPECT_EQ(describe(path), FileData::allOnes());
  }
  EXPECT_TRUE(the().calls.empty());
}

TEST_F(FileInformation, OtherExtensionsThatLookLikeItAreExamined) {
  for (const char* path : {"a.mpo.jpg", "mpo", "a.mpo2", "a.mp", "dir.mpo/a", "dir.mpo\\a",
                           "a.mpo.", "a.xmpo", "", "a.averyveryverylongextension.mpoo"}) {
    const FileData described(describe(path));
    EXPECT_NE(described.handle(), FileData::allOnes()) << path;
  }
}

TEST_F(FileInformation, TheQualityIsTheSettingNotTheFiles) {
  EXPECT_EQ(at<host::u32>(bytesOf(describe("a.jpg")), 752), 85u);
}

TEST_F(FileInformation, AThumbnailLeavesNoTraceInTheRecord) {
  const auto without = bytesOf(describe("a.jpg"));
  for (const host::u32 components : {1u, 3u}) {
    serveThumbnail(components);
    EXPECT_EQ(bytesOf(describe("a.jpg")), without);
    EXPECT_EQ(bytesOf(describe(L"a.jpg")), without);
  }
}

TEST_F(FileInformation, TheProbeRunsInOrderAndClosesItsReader) {
  serveThumbnail(3);
  FileData(describe("a.jpg"));
  EXPECT_THAT(callsOf({"kJpg", "kRExif"}),
              testing::ElementsAre("kJpgFileGetInfo", "kRExifBeginRead", "kRExifGetThumbnailData",
                                   "kJpgStreamGetInfo", "kRExifEndRead"));
  the().calls.clear();
  FileData(describe(L"a.jpg"));
  EXPECT_THAT(callsOf({"kJpg", "kRExif"}),
              testing::ElementsAre("kJpgFileGetInfoW", "kRExifBeginReadW", "kRExifGetThumbnailData",
                                   "kJpgStreamGetInfo", "kRExifEndRead"));
}

TEST_F(FileInformation, AFileWithoutAThumbnailDoesNotReachTheStreamCalls) {
  serveThumbnail(3);
  the().thumbnailExists = 0;
  FileData(describe("a.jpg"));
  EXPECT_THAT(callsOf({"kRExif", "kJpgStream"}),
              testing::ElementsAre("kRExifBeginRead", "kRExifEndRead"));
  serveThumbnail(3);
  the().thumbnailData = [](host::u64*) { return -1; };
  the().calls.clear();
  FileData(describe("a.jpg"));
  EXPECT_THAT(callsOf({"kJpgStream"}), testing::IsEmpty());
  EXPECT_THAT(callsOf({"kRExifEndRead"}), testing::SizeIs(1));
}

TEST_F(FileInformation, TheRecordIsHandedOverUnlocked) {
  EXPECT_TRUE(FileData(describe("a.jpg")).unlocked());
}

}  // namespace
