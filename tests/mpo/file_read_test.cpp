// Reading the first image of a multi-picture file: sources, positions, results, previews.
#include "tests/mpo/stream_codec.h"
#include "tests/support/mpf_builder.h"
#include "tests/support/scratch_file.h"

namespace {

using namespace test;
using host::u32;
using support::Bytes;
using support::MpoFileBuilder;

std::vector<u32> rowsSeen;
std::vector<u32> widthsSeen;
int rowAnswer = 1;

int takeRow(host::ReadRequest*, host::u64, u32 row, u32 width, u32, host::u8**, host::u16,
            host::i32, u32) {
  rowsSeen.push_back(row);
  widthsSeen.push_back(width);
  return rowAnswer;
}

std::wstring currentFolder() {
  wchar_t path[260] = {};
  GetCurrentDirectoryW(260, path);
  return path;
}

class MpoFileRead : public PluginTest {
 protected:
  void SetUp() override {
    PluginTest::SetUp();
    codec_.install();
    rowsSeen.clear();
    widthsSeen.clear();
    rowAnswer = 1;
    scratch_.write(builder_.build());
    data_ = std::make_unique<FileData>(describeMpo(scratch_.path()));
    ASSERT_NE(data_->handle(), nullptr);
    setPath(scratch_.path());
    codec_.widths.clear();
    codec_.lengths.clear();
    the().calls.clear();
  }

  void setPath(const std::string& path) {
    data_->with<host::FileDataRecord>(
        [&](auto& record) { std::strcpy(record.ansiPath, path.c_str()); });
  }
  int read(HANDLE file = nullptr, const char* path = nullptr) {
    return entry<host::MPOFileReadEntry>(host::ordinalMPOFileRead)(file, path, data_->handle(),
                                                                   &request_, takeRow);
  }

  StreamCodec codec_;
  MpoFileBuilder builder_{3};
  ScratchFile scratch_;
  std::unique_ptr<FileData> data_;
  host::ReadRequest request_ = {1, {}, 0, {}, 0, 0};
};

TEST_F(MpoFileRead, NullArgumentsGiveZeroWithoutAReport) {
  auto* read = entry<host::MPOFileReadEntry>(host::ordinalMPOFileRead);
  EXPECT_EQ(read(nullptr, "a", nullptr, &request_, takeRow), 0);
  EXPECT_EQ(read(nullptr, "a", data_->handle(), nullptr, takeRow), 0);
  EXPECT_EQ(read(nullptr, "a", data_->handle(), &request_, nullptr), 0);
  const FileData tooSmall(745);
  EXPECT_EQ(read(nullptr, "a", tooSmall.handle(), &request_, takeRow), 0);
  EXPECT_TRUE(the().calls.empty());
}

TEST_F(MpoFileRead, TheFirstImageIsDeliveredRowByRow) {
  EXPECT_EQ(read(), 1);
  EXPECT_THAT(rowsSeen, testing::ElementsAre(0, 1, 2, 3, 4, 5, 6, 7));
  EXPECT_THAT(codec_.widths, testing::ElementsAre(8));
  EXPECT_TRUE(data_->unlocked());
}

TEST_F(MpoFileRead, TheMetadataOfThePictureIsTakenIn) {
  builder_.stream(0).app(1, support::bytesOf(orientationSegment()));
  scratch_.write(builder_.build());
  data_ = std::make_unique<FileData>(describeMpo(scratch_.path()));
  setPath(scratch_.path());
  EXPECT_EQ(read(), 1);
  const std::vector<Field> fields = fieldsOf(data_->properties());
  ASSERT_FALSE(fields.empty());
  EXPECT_EQ(fields.back().descriptor.fieldId, 4009);
  EXPECT_EQ(data_->with<host::MpoFileData>([](auto& data) { return data.list.scanned; }), 1u);
}

TEST_F(MpoFileRead, TheFirstOfTheArrayNeedNotBeTheFirstOfTheFile) {
  data_->with<host::MpoFileData>([&](host::MpoFileData& data) {
    data.entries[0].fileOffset = static_cast<u32>(builder_.starts()[2]);
  });
  EXPECT_EQ(read(), 1);
  EXPECT_THAT(codec_.widths, testing::ElementsAre(24));
}

TEST_F(MpoFileRead, WithoutAListTheFileIsReadFromItsStart) {
  const auto offset = static_cast<u32>(builder_.starts()[1]);
  using Change = std::function<void(host::MpoFileData&)>;
  for (const Change& change :
       {Change([](auto& data) { data.tag = 0; }), Change([](auto& data) { data.list.entries = 0; }),
        Change([](auto& data) { data.list.imageCount = 0; })}) {
    SetUp();
    data_->with<host::MpoFileData>([&](host::MpoFileData& data) {
      data.entries[0].fileOffset = offset;
      change(data);
    });
    EXPECT_EQ(read(), 1);
    EXPECT_THAT(codec_.widths, testing::ElementsAre(8));
  }
}

TEST_F(MpoFileRead, ASmallRecordWithTheMarkIsReadFromTheFilesStart) {
  data_ = std::make_unique<FileData>(39792);
  data_->with<host::MpoFileData>([&](auto& data) {
    data.tag = host::mpoTailTag;
    data.list.imageCount = 1;
    data.list.entries = 1;
    data.entries[0].fileOffset = static_cast<u32>(builder_.starts()[1]);
  });
  setPath(scratch_.path());
  EXPECT_EQ(read(), 1);
  EXPECT_THAT(codec_.widths, testing::ElementsAre(8));
}

TEST_F(MpoFileRead, HandleThenWidePathThenAnsiPathThenArgument) {
  MpoFileBuilder other(1);
  other.stream(0).size(80, 8);
  const ScratchFile second(other.build());
  const std::wstring wide = second.widePath();
  setPath("no such file");
  data_->with<host::FileDataRecord>([&](auto& record) {
    record.pathFlags = host::pathFlagWide;
    record.widePath = reinterpret_cast<host::u64>(wide.c_str());
  });
  EXPECT_EQ(read(nullptr, "no such file"), 1);
  {
    const platform::OpenFile file = scratch_.open();
    EXPECT_EQ(read(file.get(), "no such file"), 1);
    EXPECT_TRUE(platform::moveTo(file.get(), 0).has_value()) << "left open";
  }
  data_->with<host::FileDataRecord>([&](auto& record) { record.pathFlags = 0; });
  setPath(scratch_.path());
  EXPECT_EQ(read(nullptr, "no such file"), 1);
  setPath("");
  EXPECT_EQ(read(nullptr, second.path().c_str()), 1);
  EXPECT_THAT(codec_.widths, testing::ElementsAre(80, 8, 8, 80));
}

TEST_F(MpoFileRead, NoFileIsReported) {
  setPath("");
  EXPECT_EQ(read(), 0);
  setPath("/no/such/file");
  EXPECT_EQ(read(nullptr, scratch_.path().c_str()), 0) << "the record's path decides";
  const std::vector<int> report = {1004, 1, 1890, 1891, 512};
  EXPECT_THAT(reportedErrors(), testing::ElementsAre(report, report));
  EXPECT_TRUE(callsOf({"kJpg"}).empty());
}

TEST_F(MpoFileRead, CodecResultsBecomeResultsAndReports) {
  const struct {
    int codec, result;
    bool reported;
  } rows[] = {{-1, -1, false}, {0, 0, true}, {2, 0, true}, {-104, 0, true}};
  for (const auto& row : rows) {
    the().reports.clear();
    the().read = [&](auto&, auto&) { return row.codec; };
    EXPECT_EQ(read(), row.result);
    EXPECT_EQ(reportedErrors().size(), row.reported ? 1u : 0u);
    if (row.reported) {
      EXPECT_EQ(reportedErrors()[0], (std::vector{4020, 3, 1890, 1891, 548}));
    }
    EXPECT_TRUE(data_->unlocked());
  }
}

TEST_F(MpoFileRead, TheHostsAnswerStopsTheCodec) {
  rowAnswer = -1;
  EXPECT_EQ(read(), -1);
  EXPECT_EQ(rowsSeen.size(), 1u);
}

TEST_F(MpoFileRead, TheTemporaryFolderIsCurrentOnlyMeanwhile) {
  const std::wstring before = currentFolder();
  std::wstring during;
  for (const int result : {1, 0, -1}) {
    during.clear();
    the().read = [&](auto&, auto&) {
      during = currentFolder();
      return result;
    };
    EXPECT_EQ(read(), result == -1 ? -1 : result);
    EXPECT_NE(during, before);
    EXPECT_EQ(currentFolder(), before);
  }
  setPath("");
  read();
  EXPECT_EQ(currentFolder(), before) << "also without a source";
}

TEST_F(MpoFileRead, APreviewOfAnOwnPreviewIsTheCodecs) {
  request_ = {0, {}, 1, {}, 4, 4};
  the().shrink = [](auto...) {};
  the().read = [&](const host::InputDescriptor&, const host::CodecCallback& callback) {
    host::ImageHeader header = {32, 8, 8, 3, 1, 72, 72, 3};
    EXPECT_EQ(StreamCodec::raise(callback, host::eventHeader, &header), 1u);
    EXPECT_EQ(+header.width, 4u) << "asked of the codec";
    return StreamCodec::rows({32, 8, 8, 3, 1, 72, 72, 3}, callback);
  };
  EXPECT_EQ(read(), 1);
  EXPECT_EQ(+request_.preview, -2);
  EXPECT_THAT(widthsSeen, testing::Each(4u)) << "scaled here, the blocks freed after it";
  EXPECT_EQ(rowsSeen.size(), 8u);
}

TEST_F(MpoFileRead, WithoutImageDataTheExifThumbnailIsDelivered) {
  request_ = {0, {}, 0, {}, 0, 0};
  EXPECT_EQ(read(), 0) << "there is none";
  EXPECT_TRUE(the().reports.empty());
  EXPECT_TRUE(callsOf({"kJpg"}).empty());
  EXPECT_THAT(callsOf({"kRExif"}), testing::ElementsAre("kRExifBeginRead"));
}

TEST_F(MpoFileRead, SegmentsAreKeptAsTheJpegReaderKeepsThem) {
  builder_.stream(0).app(7, support::bytesOf("seven!")).xmp(support::bytesOf("<x/>"));
  SetUp();
  EXPECT_EQ(read(), 1);
  std::vector<std::pair<int, std::string>> fields;
  for (const Field& field : fieldsOf(data_->properties())) {
    fields.emplace_back(field.descriptor.fieldId, std::string(field.descriptor.name, 4).c_str());
  }
  EXPECT_THAT(fields, testing::ElementsAre(std::pair(3999, ""), std::pair(4037, ""),
                                           std::pair(4701, "seve"), std::pair(4037, ""),
                                           std::pair(4701, "http"), std::pair(4701, "MPF")));
}

TEST_F(MpoFileRead, AFailedReadTakesBackWhatItCaptured) {
  const Bytes before = data_->bytes();
  rowAnswer = 7;
  EXPECT_EQ(read(), 0);
  EXPECT_EQ(data_->bytes(), before);
}

}  // namespace
