// Every exported entry on a machine that fails at every point: it answers and reports what is
// described for that failure, and leaves nothing behind.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "host/file_data.h"
#include "host/property_record.h"
#include "tests/fault/entry_bench.h"
#include "tests/fault/machine.h"

namespace fault {
namespace {

using fiohost::Family;
using host::i64;

struct EntryCase {
  const char* name;
  void (*prepare)(EntryBench& bench);
  i64 (*call)(EntryBench& bench);
  // What it may answer and report instead of its answer on a machine in order.
  std::vector<Reply> failures;
  // Its other results: how much of them may be missing after an answer as on a machine in order.
  enum class Work { none, rows, wholeFile, fileWithLessMetadata } work = Work::none;
  std::size_t keptBlocks = 0;
  // Reported of a part that may be missing.
  int partReport = 0;
};

void PrintTo(const EntryCase& entry, std::ostream* out) { *out << entry.name; }

constexpr const char* output = "out.file";
constexpr host::i32 previewIsThumbnail = 2048;

using Case = std::tuple<EntryCase, Resource, Extent, int>;

// From SOS on, where the picture's own data begin.
Bytes pictureOf(const Bytes& jpeg) {
  const auto segments = support::segmentsOf(jpeg);
  if (segments.empty() || segments.back().marker != 0xDA) return {};
  return {jpeg.begin() + static_cast<std::ptrdiff_t>(segments.back().markerOffset), jpeg.end()};
}

class Entries : public testing::TestWithParam<Case> {
 protected:
  Entries() {
    bench_.refusal = std::get<int>(GetParam());
    prepare();
    run();
    done_ = bench_.reply();
    doneRows_ = bench_.delivered();
    doneFile_ = bench_.scratch.read(output);
    doneTag_ = tailTag();
    cleanUp();
  }

  [[nodiscard]] const EntryCase& entry() const { return std::get<EntryCase>(GetParam()); }

  void prepare() {
    std::filesystem::remove(bench_.scratch.file(output));
    entry().prepare(bench_);
  }
  void run() {
    bench_.call([this] { return entry().call(bench_); });
  }

  // Kept: an EXIF segment that cannot be built because a tag table is missing leaves the property
  // record locked.
  void cleanUp() {
    bench_.takeBack();
    if (entry().work != EntryCase::Work::fileWithLessMetadata) return;
    HGLOBAL properties = bench_.properties();
    if (properties != nullptr && (GlobalFlags(properties) & GMEM_LOCKCOUNT) == 1) {
      GlobalUnlock(properties);
    }
  }

  void check() {
    const Reply reply = bench_.reply();
    if (reply.result == done_.result) {
      EXPECT_TRUE(reply.code == 0 || reply.code == entry().partReport) << reply.code;
      checkWork();
    } else {
      const auto& failures = entry().failures;
      EXPECT_NE(std::find(failures.begin(), failures.end(), reply), failures.end())
          << "answered " << reply.result << ", reported " << reply.code;
    }
    cleanUp();
    bench_.forget();
  }

  // What the record says that it is; 0 when it is too short for that.
  [[nodiscard]] host::u32 tailTag() const {
    constexpr std::size_t place = offsetof(host::JpegFileData, tail.tag);
    host::u32 tag = 0;
    const platform::LockedGlobal lock(bench_.record());
    if (lock && lock.size() >= place + sizeof tag) {
      std::memcpy(&tag, static_cast<const host::u8*>(lock.address()) + place, sizeof tag);
    }
    return tag;
  }

  void checkWork() const {
    const Bytes file = bench_.scratch.read(output);
    switch (entry().work) {
      case EntryCase::Work::none:
        break;
      case EntryCase::Work::rows:
        EXPECT_EQ(bench_.delivered(), doneRows_);
        break;
      case EntryCase::Work::wholeFile:
        EXPECT_EQ(file, doneFile_);
        break;
      case EntryCase::Work::fileWithLessMetadata:
        EXPECT_EQ(tailTag(), doneTag_) << "the record tells what was written";
        EXPECT_FALSE(pictureOf(file).empty());
        EXPECT_EQ(pictureOf(file), pictureOf(doneFile_));
        break;
    }
  }

  EntryBench bench_;
  Reply done_;
  host::u64 doneRows_ = 0;
  Bytes doneFile_;
  host::u32 doneTag_ = 0;
};

TEST_P(Entries, AnswerAsDescribedAndLeaveNothing) {
  const auto& [entry, resource, extent, refusal] = GetParam();
  ASSERT_EQ(done_, (Reply{done_.result, 0})) << "on a machine in order";
  failEverywhere({entry.name, [this] { prepare(); },
                  [this] {
                    run();
                    return bench_.reply() == done_;
                  },
                  [this](bool) {
                    check();
                    prepare();  // the record that was there before the call
                  },
                  entry.keptBlocks, entry.keptBlocks == 0},
                 resource, extent);
}

// Records and answers of the families.
void nothing(EntryBench&) {}
void jpegRecord(EntryBench& bench) { bench.describe(Family::jpeg, "in.jpg"); }
void mpoRecord(EntryBench& bench) { bench.describe(Family::mpo, "in.mpo"); }
void jpegToScale(EntryBench& bench) {
  jpegRecord(bench);
  bench.wantPreview(previewIsThumbnail);
  bench.request = {1, {}, 1, {}, 13, 9};
}
void jpegForCodecPreview(EntryBench& bench) {
  jpegRecord(bench);
  bench.request = {0, {}, 1, {}, 13, 9};
}
void jpegWithThumbnail(EntryBench& bench) {
  jpegRecord(bench);
  bench.wantPreview(previewIsThumbnail);
  bench.request = {0, {}, 1, {}, 8, 8};
}
void recordToWrite(EntryBench& bench) {
  jpegRecord(bench);
  bench.loadProperties();
  bench.forgetExifSegment();
  bench.wantPreview(previewIsThumbnail);
  bench.nameOutput(output);
}
void jpegWithProperties(EntryBench& bench) {
  jpegRecord(bench);
  bench.loadProperties();
}

template <host::PluginOrdinal ordinal>
i64 formatInfo(EntryBench& bench) {
  return bench.take(bench.entry<host::GetFormatInfoEntry>(ordinal)());
}
i64 formatCount(EntryBench& bench) {
  return bench.entry<host::GetFileFmtNumEntry>(host::ordinalGetFileFmtNum)();
}
i64 describeJpeg(EntryBench& bench) {
  auto* entry = bench.entry<host::JpgGetFileDataEntry>(host::ordinalJpgGetFileData);
  return bench.take(entry(0, bench.jpegPath.c_str()));
}
i64 describeMpo(EntryBench& bench) {
  auto* entry = bench.entry<host::MPOGetFileDataEntry>(host::ordinalMPOGetFileData);
  return bench.take(entry(nullptr, bench.mpoPath.c_str(), 0));
}
// The slot says what came of it; the action answers 1 for whatever is not 0.
i64 describeWideJpeg(EntryBench& bench) {
  host::DescribeParameters parameters = {0, bench.wideJpegPath.c_str(), 0};
  const int answer = bench.entry<host::JpgFIOActionEntry>(host::ordinalJpgFIOAction)(
      0, host::actionDescribe, &parameters);
  EXPECT_EQ(answer, parameters.result != 0 ? 1 : 0);
  return bench.take(host::u64{parameters.result});
}
i64 describeWideMpo(EntryBench& bench) {
  host::DescribeParameters parameters = {0, bench.wideMpoPath.c_str(), 0};
  const int answer = bench.entry<host::MPOFIOActionEntry>(host::ordinalMPOFIOAction)(
      nullptr, host::actionDescribe, &parameters, nullptr, 0);
  EXPECT_EQ(answer, parameters.result != 0 ? 1 : 0);
  return bench.take(host::u64{parameters.result});
}
i64 readJpeg(EntryBench& bench) {
  return bench.entry<host::JpgFileReadEntry>(host::ordinalJpgFileRead)(
      0, nullptr, bench.record(), &bench.request, &EntryBench::onRows);
}
i64 readMpo(EntryBench& bench) {
  return bench.entry<host::MPOFileReadEntry>(host::ordinalMPOFileRead)(
      nullptr, nullptr, bench.record(), &bench.request, &EntryBench::onRows);
}
i64 readEveryImage(EntryBench& bench) {
  return bench.entry<host::MPOFIOActionEntry>(host::ordinalMPOFIOAction)(
      bench.record(), host::actionReadImages, reinterpret_cast<void*>(&EntryBench::onRequest),
      &bench, -1);
}
i64 writeJpeg(EntryBench& bench) {
  return bench.entry<host::JpgFileWriteEntry>(host::ordinalJpgFileWrite)(
      nullptr, bench.record(), &bench, &EntryBench::rowSource);
}
i64 writeMpo(EntryBench& bench) {
  return bench.entry<host::MPOFileWriteEntry>(host::ordinalMPOFileWrite)(0, bench.record(), &bench,
                                                                         &EntryBench::mpoRow);
}
i64 writeFirstOfTwo(EntryBench& bench) {
  return bench.entry<host::MPOFIOActionEntry>(host::ordinalMPOFIOAction)(
      bench.record(), host::actionWriteImage, reinterpret_cast<void*>(&EntryBench::onRequest),
      &bench, 0);
}
template <host::PluginOrdinal ordinal>
i64 getProperty(EntryBench& bench) {
  HGLOBAL out = nullptr;
  return bench.entry<host::GetPropertyEntry>(ordinal)(bench.record(), &out);
}
template <host::PluginOrdinal ordinal>
i64 setProperty(EntryBench& bench) {
  return bench.entry<host::SetPropertyEntry>(ordinal)(bench.record(), bench.properties());
}

constexpr int memory = host::errorMemoryOrOutput;
constexpr int describing = host::errorDescribe;
constexpr int reading = host::errorRead;
constexpr int writing = host::errorWrite;

using Work = EntryCase::Work;
const std::vector<Reply> writeFailures = {{-1, 0}, {0, 0}, {0, memory}, {0, writing}};

const EntryCase entries[] = {
    {"formatCount", &nothing, &formatCount, {}},
    {"jpegFormatInfo", &nothing, &formatInfo<host::ordinalJpgGetFormatInfo>, {{0, memory}}},
    {"mpoFormatInfo", &nothing, &formatInfo<host::ordinalMPOGetFormatInfo>, {{0, memory}}},
    {"describeJpeg", &nothing, &describeJpeg, {{-1, describing}, {0, memory}}},
    {"describeWideJpeg", &nothing, &describeWideJpeg, {{-1, describing}, {0, memory}}},
    {"describeMpo", &nothing, &describeMpo, {{0, 0}, {0, describing}, {0, memory}}},
    {"describeWideMpo", &nothing, &describeWideMpo, {{0, 0}, {0, describing}, {0, memory}}},
    {"readJpeg", &jpegRecord, &readJpeg, {{-1, 0}, {0, reading}}, Work::rows, 0, memory},
    // Kept: the three blocks of a scaled read stay when the image is not its own preview.
    {"readJpegScaled", &jpegToScale, &readJpeg, {{-1, 0}, {0, reading}}, Work::rows, 3, memory},
    {"readJpegPreview",
     &jpegForCodecPreview,
     &readJpeg,
     {{-1, 0}, {0, reading}},
     Work::rows,
     0,
     memory},
    {"readThumbnail", &jpegWithThumbnail, &readJpeg, {{0, 0}}, Work::none, 0, memory},
    {"readMpo", &mpoRecord, &readMpo, {{-1, 0}, {0, reading}, {0, memory}}, Work::rows},
    {"readEveryImage",
     &mpoRecord,
     &readEveryImage,
     {{-1, 0}, {0, reading}, {0, memory}},
     Work::rows},
    {"writeJpeg", &recordToWrite, &writeJpeg, writeFailures, Work::fileWithLessMetadata, 0,
     writing},
    {"writeMpo", &recordToWrite, &writeMpo, writeFailures, Work::fileWithLessMetadata, 0, writing},
    {"writeFirstOfTwo", &recordToWrite, &writeFirstOfTwo, writeFailures, Work::fileWithLessMetadata,
     0, writing},
    {"getProperty",
     &jpegRecord,
     &getProperty<host::ordinalGetProperty>,
     {{0, 0}, {0, memory}},
     Work::none,
     0,
     memory},
    {"mpoGetProperty", &mpoRecord, &getProperty<host::ordinalMPOGetProperty>, {{0, 0}}},
    {"setProperty",
     &jpegWithProperties,
     &setProperty<host::ordinalSetProperty>,
     {},
     Work::none,
     0,
     memory},
    {"mpoSetProperty",
     &jpegWithProperties,
     &setProperty<host::ordinalMPOSetProperty>,
     {},
     Work::none,
     0,
     memory},
};

std::string nameOfCase(const testing::TestParamInfo<Case>& chosen) {
  const auto& [entry, resource, extent, refusal] = chosen.param;
  std::string name = std::string(entry.name) + "_" + nameOf(resource) +
                     (extent == Extent::once ? "_once" : "_ever_after");
  if (refusal == 0) name += "_refused";
  std::replace(name.begin(), name.end(), ' ', '_');
  return name;
}

INSTANTIATE_TEST_SUITE_P(AllExported, Entries,
                         testing::Combine(testing::ValuesIn(entries),
                                          testing::Values(Resource::globalMemory, Resource::heap,
                                                          Resource::files, Resource::calls,
                                                          Resource::events),
                                          testing::Values(Extent::once, Extent::everAfter),
                                          testing::Values(-1)),
                         &nameOfCase);

// The host's answers again, with one that is no stop.
INSTANTIATE_TEST_SUITE_P(AllRefused, Entries,
                         testing::Combine(testing::ValuesIn(entries),
                                          testing::Values(Resource::calls),
                                          testing::Values(Extent::once, Extent::everAfter),
                                          testing::Values(0)),
                         &nameOfCase);

}  // namespace
}  // namespace fault
