// Two threads of a host, each with records of its own, in different entries at the same time. The
// save options are all that they share. Under the thread sanitizer a race ends the program.
#include <thread>

#include "tests/hosts/host.h"
#include "tests/support/mpf_builder.h"
#include "tests/support/rich_parts.h"

namespace hosts {
namespace {

using host::u32;
using host::u64;
using host::u8;

#ifndef KF_ROUNDS
constexpr int rounds = 40;
#else
constexpr int rounds = KF_ROUNDS;
#endif

constexpr u32 width = 24;
constexpr u32 height = 16;

int takeRows(host::ReadRequest*, u64, u32, u32, u32, u8**, host::u16, host::i32, u32) { return 1; }
int takeImages(int, void*, void*, HGLOBAL) { return 1; }
void* giveRows(void* context, u64, u32, u32, u32, u32 second, host::i32, host::i32) {
  return second == 0 ? nullptr : context;
}
void* giveRow(void* context, u32, u32, u32, u32, int, int, u32) { return context; }

void readJpeg() {
  const Record record(fiohost::Family::jpeg, "in.jpg");
  host::ReadRequest request = {1, {}, 0, {}, 0, 0};
  EXPECT_EQ(session().plugin.read(fiohost::Family::jpeg, record.handle(), &request, &takeRows), 1);
}

void readMpo() {
  const Record record(fiohost::Family::mpo, "in.mpo");
  EXPECT_EQ(session().plugin.readImage(record.handle(), &takeImages, nullptr, ~u32{0}), 1);
}

void writeJpeg() {
  Record record(fiohost::Family::jpeg, "in.jpg");
  session().plugin.loadProperties(record.handle());
  record.namePath("out.jpg");
  u8 row[width * 3] = {};
  u8* rows[] = {row};
  EXPECT_EQ(session().plugin.write(record.handle(), rows, &giveRows), 1);
}

void writeMpo() {
  Record record(fiohost::Family::jpeg, "in.jpg");
  record.namePath("out.mpo");
  u8 row[width * 3] = {};
  EXPECT_EQ(
      entry<host::MPOFileWriteEntry>(host::ordinalMPOFileWrite)(0, record.handle(), row, &giveRow),
      1);
}

void exchangeProperties() {
  const Record record(fiohost::Family::jpeg, "in.jpg");
  HGLOBAL out = nullptr;
  EXPECT_EQ(entry<host::GetPropertyEntry>(host::ordinalGetProperty)(record.handle(), &out), 1);
  entry<host::SetPropertyEntry>(host::ordinalSetProperty)(record.handle(), out);
}

void describeFormats() {
  EXPECT_TRUE(session().plugin.formatInfo(fiohost::Family::jpeg));
  EXPECT_TRUE(session().plugin.formatInfo(fiohost::Family::mpo));
}

// A failure of one thread is not the other's.
void failToDescribe() {
  session().reports.clear();
  host::DescribeParameters parameters = {0, L"/nowhere/at/all.jpg", 0};
  entry<host::JpgFIOActionEntry>(host::ordinalJpgFIOAction)(0, host::actionDescribe, &parameters);
  EXPECT_EQ(session().reports.code(), host::errorDescribe);
}

void describeOnly() { const Record record(fiohost::Family::mpo, "in.mpo"); }

using Work = void();
using Pair = std::pair<Work*, Work*>;

class TwoHosts : public testing::TestWithParam<Pair> {};

TEST_P(TwoHosts, ServeAtTheSameTime) {
  static_cast<void>(session());
  writeFile("in.jpg",
            support::withEverySegment(support::JpegBuilder().size(width, height)).build());
  writeFile("in.mpo", support::MpoFileBuilder(2).build());
  const NothingLeft check;  // the current directory too, which reading changes
  const auto repeat = [](Work* work) {
    for (int round = 0; round < rounds; ++round) work();
  };
  std::thread other(repeat, GetParam().second);
  repeat(GetParam().first);
  other.join();
}

std::vector<Pair> pairs() {
  Work* const all[] = {&readJpeg,           &readMpo,         &writeJpeg,      &writeMpo,
                       &exchangeProperties, &describeFormats, &failToDescribe, &describeOnly};
  std::vector<Pair> made;
  for (auto* const* one = std::begin(all); one != std::end(all); ++one) {
    for (auto* const* other = one + 1; other != std::end(all); ++other)
      made.push_back({*one, *other});
  }
  made.push_back({&readJpeg, &readJpeg});
  made.push_back({&exchangeProperties, &exchangeProperties});
  return made;
}

INSTANTIATE_TEST_SUITE_P(EveryPair, TwoHosts, testing::ValuesIn(pairs()));

}  // namespace
}  // namespace hosts
