// Reading any image for a host that answers requests: indices, requests, segments, failures.
#include "tests/mpo/stream_codec.h"
#include "tests/support/mpf_builder.h"
#include "tests/support/scratch_file.h"

namespace {

using namespace test;
using host::u32;
using host::u64;
using support::Bytes;
using support::bytesOf;
using support::MpfBuilder;
using support::MpoFileBuilder;
namespace mpf = support::mpf;

struct HostCall {
  int action;
  std::vector<host::u8> record;
  void* context;
  HGLOBAL fileData;
  host::u8 firstByte;
};
std::vector<HostCall> hostCalls;
std::function<int(int action)> hostAnswer;

int onRequest(int action, void* record, void* context, HGLOBAL fileData) {
  const auto* bytes = static_cast<const host::u8*>(record);
  u32 size = 0;
  std::memcpy(&size, bytes, 4);
  HostCall call{action, {bytes, bytes + size}, context, fileData, 0};
  if (action == 2) {
    call.firstByte = *reinterpret_cast<const host::u8*>(at<u64>(call.record, 32));
  }
  hostCalls.push_back(call);
  return hostAnswer(action);
}

class MpoImageRead : public PluginTest {
 protected:
  void SetUp() override {
    PluginTest::SetUp();
    codec_ = {};
    codec_.install();
    hostCalls.clear();
    hostAnswer = [](int) { return 1; };
    describe(builder_.build());
  }

  void describe(const Bytes& content) {
    scratch_.write(content);
    data_ = std::make_unique<FileData>(describeMpo(scratch_.path()));
    ASSERT_NE(data_->handle(), nullptr);
    setPath(scratch_.path());
    codec_.widths.clear();
    the().calls.clear();
  }
  void setPath(const std::string& path) {
    data_->with<host::FileDataRecord>(
        [&](auto& record) { std::strcpy(record.ansiPath, path.c_str()); });
  }
  int read(int index) {
    return entry<host::MPOFIOActionEntry>(host::ordinalMPOFIOAction)(
        data_->handle(), 26, reinterpret_cast<void*>(&onRequest), &context_, index);
  }
  std::vector<int> actions() const {
    std::vector<int> seen;
    for (const HostCall& call : hostCalls) seen.push_back(call.action);
    return seen;
  }
  std::vector<int> fieldIds() const {
    std::vector<int> ids;
    for (const Field& field : fieldsOf(data_->properties())) {
      ids.push_back(field.descriptor.fieldId);
    }
    return ids;
  }

  StreamCodec codec_;
  MpoFileBuilder builder_{3};
  ScratchFile scratch_;
  std::unique_ptr<FileData> data_;
  int context_ = 0;
};

TEST_F(MpoImageRead, NullArgumentsGiveZeroWithoutAReport) {
  auto* action = entry<host::MPOFIOActionEntry>(host::ordinalMPOFIOAction);
  EXPECT_EQ(action(nullptr, 26, reinterpret_cast<void*>(&onRequest), nullptr, 1), 0);
  EXPECT_EQ(action(data_->handle(), 26, nullptr, nullptr, 1), 0);
  const FileData tooSmall(745);
  EXPECT_EQ(action(tooSmall.handle(), 26, reinterpret_cast<void*>(&onRequest), nullptr, 1), 0);
  EXPECT_TRUE(the().calls.empty());
}

TEST_F(MpoImageRead, AnIndexNamesAnImageFromOne) {
  for (const int index : {1, 2, 3}) {
    codec_.widths.clear();
    EXPECT_EQ(read(index), 1);
    EXPECT_THAT(codec_.widths, testing::ElementsAre(8 * index));
  }
}

TEST_F(MpoImageRead, OtherIndicesGiveZeroWithoutDecoding) {
  for (const int index : {0, 4, 1000, -2, -2147483647}) EXPECT_EQ(read(index), 0);
  EXPECT_TRUE(the().calls.empty());
  EXPECT_TRUE(hostCalls.empty());
}

TEST_F(MpoImageRead, MinusOneReadsEveryImageInArrayOrder) {
  EXPECT_EQ(read(-1), 1);
  EXPECT_THAT(codec_.widths, testing::ElementsAre(8, 16, 24));
}

TEST_F(MpoImageRead, MinusOneStopsAtTheFirstOtherResult) {
  int headers = 0;
  for (const auto& [answer, result] : {std::pair{-1, -1}, std::pair{5, 0}}) {
    codec_.widths.clear();
    headers = 0;
    hostAnswer = [&, refusal = answer](int action) {
      if (action == 1) ++headers;
      return headers == 2 ? refusal : 1;
    };
    EXPECT_EQ(read(-1), result);
    EXPECT_THAT(codec_.widths, testing::ElementsAre(8, 16));
  }
}

// A list can name one small stream many times.
TEST_F(MpoImageRead, ImagesOfManyMorePixelsThanTheFileHasBitsForAreRefused) {
  codec_.headerWidth = 20000;
  codec_.headerHeight = 10000;
  EXPECT_EQ(read(-1), 0);
  const std::vector<int> seen = actions();
  EXPECT_EQ(std::count(seen.begin(), seen.end(), 1), 1);  // the first one's header
  EXPECT_THAT(reportedErrors(), testing::ElementsAre(std::vector{4020, 3, 1890, 1891, 548}));
  EXPECT_EQ(read(2), 1);  // of a single image the codec judges
  codec_.headerWidth = 6000;
  EXPECT_EQ(read(-1), 1);
  codec_.headerWidth = 20000;
  Bytes large = builder_.build();
  large.resize(3 * 20000 * 10000 / (64 * 8));
  describe(large);
  EXPECT_EQ(read(-1), 1);
}

TEST_F(MpoImageRead, AnEmptyListIsASuccessForAllAndNoneForOne) {
  data_->with<host::MpoFileData>([](auto& data) { data.list.imageCount = 0; });
  EXPECT_EQ(read(-1), 1);
  EXPECT_EQ(read(1), 0);
  EXPECT_TRUE(the().calls.empty());
}

TEST_F(MpoImageRead, ARecordWithoutTheMarkReadsTheFirstImageWhateverTheIndex) {
  data_->with<host::MpoFileData>([](auto& data) { data.tag = host::jpegTailTag; });
  for (const int index : {-1, 0, 1, 9}) {
    codec_.widths.clear();
    EXPECT_EQ(read(index), 1);
    EXPECT_THAT(codec_.widths, testing::ElementsAre(8));
  }
}

TEST_F(MpoImageRead, ARecordTooShortForAListReadsTheFirstImage) {
  data_ = std::make_unique<FileData>(800);
  {
    platform::LockedGlobal lock(data_->handle());
    std::memcpy(static_cast<host::u8*>(lock.address()) + offsetof(host::MpoFileData, tag),
                &host::mpoTailTag, sizeof host::mpoTailTag);
  }
  setPath(scratch_.path());
  for (const int index : {-1, 0, 9}) {
    codec_.widths.clear();
    EXPECT_EQ(read(index), 1);
    EXPECT_THAT(codec_.widths, testing::ElementsAre(8));
  }
}

TEST_F(MpoImageRead, AShortRecordWithTheMarkHasItsCountButNoArray) {
  data_ = std::make_unique<FileData>(1009);
  data_->with<host::MpoFileData>([](auto& data) {
    data.tag = host::mpoTailTag;
    data.list.imageCount = 2;
    data.list.entries = 1;
  });
  setPath(scratch_.path());
  EXPECT_EQ(read(2), 1);
  EXPECT_EQ(read(3), 0);
  EXPECT_THAT(codec_.widths, testing::ElementsAre(8));
  EXPECT_EQ(data_->with<host::MpoFileData>([](auto& data) { return data.list.imageCount; }), 2u)
      << "its list is not parsed into";
}

TEST_F(MpoImageRead, AHugeCountReadsNothingOutsideTheArray) {
  data_->with<host::MpoFileData>([](auto& data) { data.list.imageCount = 0xFFFFFFFF; });
  codec_.lengths.clear();
  EXPECT_EQ(read(128), 0) << "the segment's attributes have no entry to go to";
  EXPECT_THAT(codec_.lengths, testing::ElementsAre(scratch_.read().size())) << "the file's start";
}

TEST_F(MpoImageRead, TheHeaderIsAnnouncedAndEveryRowDelivered) {
  EXPECT_EQ(read(2), 1);
  ASSERT_THAT(actions(), testing::ElementsAre(1, 2, 2, 2, 2, 2, 2, 2, 2));
  const std::vector<host::u8>& header = hostCalls[0].record;
  ASSERT_EQ(header.size(), 1088u);
  std::vector<host::u8> expected(1088, 0);
  const std::pair<std::size_t, u32> words[] = {{0, 1088}, {4, 2}, {8, 2}, {20, 16}, {24, 8}};
  for (const auto& [offset, value] : words) std::memcpy(expected.data() + offset, &value, 4);
  EXPECT_EQ(header, expected);
  for (u32 row = 0; row < 8; ++row) {
    const HostCall& call = hostCalls[1 + row];
    ASSERT_EQ(call.record.size(), 48u);
    const u32 expectedWords[] = {48, 16, 8, row, 1, 8, 48, 0};
    for (u32 word = 0; word < 8; ++word) {
      EXPECT_EQ(at<u32>(call.record, 4 * word), expectedWords[word]) << 4 * word;
    }
    EXPECT_EQ(at<u32>(call.record, 40), 7u);
    EXPECT_EQ(at<u32>(call.record, 44), 0u);
    EXPECT_EQ(call.firstByte, row);
    EXPECT_EQ(call.context, &context_);
    EXPECT_EQ(call.fileData, data_->handle());
  }
}

TEST_F(MpoImageRead, TheHostsAnswersReachTheCodecUnchanged) {
  for (const int action : {1, 2}) {
    for (const int answer : {0, -1, 9}) {
      hostAnswer = [=](int seen) { return seen == action ? answer : 1; };
      the().read = [&](const host::InputDescriptor&, const host::CodecCallback& callback) {
        host::ImageHeader header = {32, 8, 8, 3, 1, 72, 72, 3};
        host::u8 pixels[24] = {};
        host::RowBlock row = {40, 0, 8, 8, 3, {}, 24, {}, pixels};
        EXPECT_EQ(static_cast<int>(StreamCodec::raise(callback, 2, &header)),
                  action == 1 ? answer : 1);
        EXPECT_EQ(+header.width, 8u) << "sizes are not copied back";
        EXPECT_EQ(static_cast<int>(StreamCodec::raise(callback, 3, &row)),
                  action == 2 ? answer : 1);
        for (const u32 event : {0u, 1u, 4u, 6u}) {
          EXPECT_EQ(StreamCodec::raise(callback, event, &header), 1u);
        }
        for (const u32 event : {2u, 3u, 5u}) {
          EXPECT_EQ(StreamCodec::raise(callback, event, nullptr), 1u);
        }
        return 1;
      };
      EXPECT_EQ(read(1), 1);
    }
  }
}

TEST_F(MpoImageRead, NoSourceIsReported) {
  setPath("");
  EXPECT_EQ(read(1), 0);
  setPath("/no/such/file");
  EXPECT_EQ(read(-1), 0);
  const std::vector<int> report = {1004, 1, 1890, 1891, 512};
  EXPECT_THAT(reportedErrors(), testing::ElementsAre(report, report));
  EXPECT_TRUE(callsOf({"kJpg"}).empty());
}

TEST_F(MpoImageRead, ACodecFailureIsReportedOnce) {
  codec_.failAt = 1;
  EXPECT_EQ(read(-1), 0);
  EXPECT_THAT(reportedErrors(), testing::ElementsAre(std::vector{4020, 3, 1890, 1891, 548}));
  EXPECT_TRUE(data_->unlocked());
}

TEST_F(MpoImageRead, TheTemporaryFolderIsCurrentOnlyMeanwhile) {
  const auto current = [] {
    wchar_t path[260] = {};
    GetCurrentDirectoryW(260, path);
    return std::wstring(path);
  };
  const std::wstring before = current();
  std::wstring during;
  hostAnswer = [&](int) {
    during = current();
    return -1;
  };
  EXPECT_EQ(read(1), -1);
  EXPECT_NE(during, before);
  EXPECT_EQ(current(), before);
}

// Segments.

TEST_F(MpoImageRead, SegmentsAreKeptForTheWriter) {
  for (std::size_t k = 0; k < 3; ++k) {
    builder_.stream(k).exif(bytesOf("II*\0")).xmp(bytesOf("<x/>")).icc(1, 1, bytesOf("p"));
    builder_.stream(k).photoshop(bytesOf("8")).app(7, bytesOf("seven")).fpxr(bytesOf("f"));
    builder_.stream(k).cameraHeap(bytesOf(std::string_view("MM\0\0\0\0HEAP", 10))).adobe(0);
    builder_.stream(k)
        .app(1, bytesOf("http://ns.adobe.com/xap/1.0/"))
        .app(2, bytesOf("ICC_PROFILE"));
  }
  describe(builder_.build());
  EXPECT_THAT(fieldIds(), testing::ElementsAre(3999, 4037, 4014)) << "made by describing";
  // The scan of the file needs its path; without one it takes nothing in.
  EXPECT_EQ(read(2), 1);
  std::vector<int> expected = {3999, 4037, 4014, 5297, 4037, 4014,
                               2004, 4701, 4712, 5000, 4701, 4701};
  std::vector<int> ids = fieldIds();
  ids.resize(std::min(ids.size(), expected.size()));
  EXPECT_EQ(ids, expected);
  for (const Field& field : fieldsOf(data_->properties())) {
    const bool raw = field.descriptor.sourceGroup == 4701;
    const int id = field.descriptor.fieldId;
    EXPECT_EQ(raw, id == 5297 || id == 2004 || id == 4701 || id == 4712 ||
                       (id == 5000 && field.descriptor.valueKind == 5 && raw))
        << id;
    if (raw) {
      EXPECT_EQ(field.block.at(0), 0xFF);
    }
  }
}

TEST_F(MpoImageRead, TheMetadataOfTheImageThatWasReadIsTakenIn) {
  builder_.stream(1).app(1, bytesOf(orientationSegment()));
  describe(builder_.build());
  EXPECT_EQ(read(1), 1);
  EXPECT_THAT(fieldIds(), testing::Not(testing::Contains(4009)));
  data_->with<host::MpoFileData>([](auto& data) { data.list.scanned = 0; });
  EXPECT_EQ(read(2), 1);
  EXPECT_THAT(fieldIds(), testing::Contains(4009));
  EXPECT_EQ(data_->with<host::MpoFileData>([](auto& data) { return data.list.scanned; }), 1u);
}

TEST_F(MpoImageRead, AScannedRecordKeepsNothingMore) {
  builder_.stream(1).app(7, bytesOf("seven")).xmp(bytesOf("<x/>"));
  describe(builder_.build());
  data_->with<host::MpoFileData>([](auto& data) { data.list.scanned = 1; });
  EXPECT_EQ(read(2), 1);
  EXPECT_EQ(data_->properties(), nullptr);
}

TEST_F(MpoImageRead, AnImagesSegmentIsParsedIntoItsEntry) {
  data_->with<host::MpoFileData>([](auto& data) { data.entries[1].imageNumber = 99; });
  EXPECT_EQ(read(2), 1);
  EXPECT_EQ(data_->with<host::MpoFileData>([](auto& data) { return data.entries[1].imageNumber; }),
            1);
}

TEST_F(MpoImageRead, OffsetsOfALaterIndexCountFromItsImage) {
  // The second stream carries an index of its own.
  MpfBuilder index(support::ByteOrder::little);
  index.ifd().number(mpf::imageCount, 3).images({{0, 1, 0}, {0, 2, 5}, {0, 3, 6}});
  support::JpegBuilder second;
  second.size(16, 8).app(3, bytesOf("abc")).mpf(index.build());
  const Bytes stream = second.build();
  Bytes file = scratch_.read();
  const auto start = static_cast<u32>(file.size());
  file.insert(file.end(), stream.begin(), stream.end());
  scratch_.write(file);
  data_->with<host::MpoFileData>([&](auto& data) { data.entries[1].fileOffset = start; });
  EXPECT_EQ(read(2), 1);
  u32 payload = 0;
  for (const auto& segment : support::segmentsOf(stream)) {
    if (segment.marker == 0xE2) payload = static_cast<u32>(segment.payloadOffset);
  }
  EXPECT_EQ(data_->with<host::MpoFileData>([](auto& data) { return data.entries[1].fileOffset; }),
            start + payload + 4 + 5);
}

TEST_F(MpoImageRead, WithoutTheMarkItIsIgnored) {
  data_->with<host::MpoFileData>([](auto& data) {
    data.tag = 0;
    data.list.kind = 99;
  });
  EXPECT_EQ(read(1), 1);
  EXPECT_EQ(data_->with<host::MpoFileData>([](auto& data) { return data.list.kind; }), 99u);
  EXPECT_TRUE(fieldIds().empty()) << "and not kept either";
}

TEST_F(MpoImageRead, ABadSegmentStopsTheCodecAndIsAReadFailure) {
  MpfBuilder early(support::ByteOrder::little);
  early.ifd().number(mpf::viewpoint, 1);
  scratch_.write(support::JpegBuilder().mpf(early.build()).build());
  data_->with<host::MpoFileData>([](auto& data) {
    data.list = {};
    data.list.imageCount = 1;
  });
  EXPECT_EQ(read(1), 0);
  EXPECT_THAT(reportedErrors(), testing::ElementsAre(std::vector{4020, 3, 1890, 1891, 548}));
}

TEST_F(MpoImageRead, AFailedReadLeavesTheRecordAsItWas) {
  builder_.stream(1).app(7, bytesOf("seven")).xmp(bytesOf("<x/>")).exif(bytesOf("II*\0"));
  describe(builder_.build());
  data_->with<host::MpoFileData>([](auto& data) {
    data.entries[1].imageNumber = 99;
    data.list.version = 98;
  });
  const Bytes before = data_->bytes();
  for (const int answer : {-1, 0}) {
    hostAnswer = [=](int) { return answer; };
    EXPECT_EQ(read(2), answer);
    EXPECT_EQ(data_->bytes(), before);
    EXPECT_TRUE(data_->unlocked());
  }
}

TEST_F(MpoImageRead, AFileWithTheRestCutOffStaysOneImageForAll) {
  const Bytes file = builder_.build();
  describe(Bytes(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(builder_.starts()[2])));
  EXPECT_EQ(read(-1), 1) << "although the first image's segment claims three";
  EXPECT_THAT(codec_.widths, testing::ElementsAre(8));
}

}  // namespace
