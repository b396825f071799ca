// Hosts that stop, that give no rows, and that answer what nobody asked: an end at every row, with
// every kind of answer.
#include <limits>

#include "tests/hosts/host.h"
#include "tests/support/mpf_builder.h"

namespace hosts {
namespace {

using host::i32;
using host::u32;
using host::u64;
using host::u8;

constexpr u32 height = 24;
constexpr u32 width = 40;
constexpr i32 answers[] = {
    -1, 0, 2, 5, -102, -104, -109, 0x7FFFFFFF, std::numeric_limits<i32>::min()};

// A host that does as it should until `left` calls have been answered.
struct Stopper {
  host::ReadRequest request = {1, {}, 0, {}, 0, 0};
  u32 left = 0;
  i32 answer = -1;
  u8 row[width * 4] = {};
  u8* rows[height] = {};

  explicit Stopper(u32 calls, i32 last = -1) : left(calls), answer(last) {
    for (u8*& each : rows) each = row;
  }
  bool goesOn() { return left != 0 && left-- != 0; }

  static int onRows(host::ReadRequest* request, u64, u32, u32, u32, u8**, host::u16, i32, u32) {
    auto& self = *reinterpret_cast<Stopper*>(request);
    return self.goesOn() ? 1 : self.answer;
  }
  static void* rowSource(void* context, u64, u32, u32, u32, u32, i32, i32) {
    auto& self = *static_cast<Stopper*>(context);
    if (self.goesOn()) return self.rows;
    return self.answer == -1 ? reinterpret_cast<void*>(~std::uintptr_t{0}) : nullptr;
  }
  static void* mpoRow(void* context, u32, u32, u32, u32, int, int, u32) {
    auto& self = *static_cast<Stopper*>(context);
    return self.goesOn() ? self.row : nullptr;
  }
  static int onRequest(int action, void* record, void* context, HGLOBAL) {
    auto& self = *static_cast<Stopper*>(context);
    if (!self.goesOn()) return self.answer;
    if (action == host::requestRowSource) {
      static_cast<host::RowRequest*>(record)->rows = reinterpret_cast<u64>(self.row);
    }
    if (action == host::requestQuestion) {
      const auto& question = *static_cast<host::ImageRequest*>(record);
      if (question.question == host::questionCount) {
        *reinterpret_cast<host::MpoCountAnswer*>(question.answer) = {2, 0};
      }
    }
    return 1;
  }
};

class Rows : public testing::Test {
 protected:
  Rows() {
    static_cast<void>(session());
    writeFile("in.jpg", support::JpegBuilder().size(width, height).build());
    writeFile("in.mpo", support::MpoFileBuilder(2).build());
  }

  // -1 is the host's own stop and not reported; anything else but 1 is a failure that is.
  static void expectEnd(int result, i32 answer, int code) {
    EXPECT_EQ(result, answer == -1 ? -1 : 0) << "answered " << answer;
    EXPECT_EQ(session().reports.code(), answer == -1 ? 0 : code) << "answered " << answer;
  }
};

TEST_F(Rows, AJpegReadEndsAtAnyRowWithAnyAnswer) {
  for (const i32 answer : answers) {
    for (u32 row = 0; row < height; ++row) {
      const NothingLeft check;
      const Record record(fiohost::Family::jpeg, "in.jpg");
      Stopper host(row, answer);
      session().reports.clear();
      const int result = session().plugin.read(fiohost::Family::jpeg, record.handle(),
                                               &host.request, &Stopper::onRows);
      expectEnd(result, answer, host::errorRead);
      EXPECT_EQ(record.properties(), nullptr) << "taken back";
    }
  }
}

TEST_F(Rows, AnMpoReadEndsAtAnyRowWithAnyAnswer) {
  for (const i32 answer : answers) {
    for (u32 row = 0; row < 8; ++row) {
      const NothingLeft check;
      const Record record(fiohost::Family::mpo, "in.mpo");
      Stopper host(row, answer);
      session().reports.clear();
      expectEnd(session().plugin.read(fiohost::Family::mpo, record.handle(), &host.request,
                                      &Stopper::onRows),
                answer, host::errorRead);
    }
  }
}

// Announcement first, then rows of each image. An answer of 2 to the announcement leaves the pixels
// out (1); to a row it is a failure like any other.
TEST_F(Rows, EveryImageOfAnMpoEndsAtAnyRequestWithAnyAnswer) {
  for (const i32 answer : answers) {
    for (u32 request = 0; request < 18; ++request) {
      const NothingLeft check;
      const Record record(fiohost::Family::mpo, "in.mpo");
      Stopper host(request, answer);
      session().reports.clear();
      const int result =
          session().plugin.readImage(record.handle(), &Stopper::onRequest, &host, ~u32{0});
      const bool announcement = request == 0 || request == 9;
      if (announcement && answer == 2) continue;
      expectEnd(result, answer, host::errorRead);
    }
  }
}

TEST_F(Rows, AJpegWriteEndsAtAnyRowWithoutOneAndClosesItsFile) {
  for (const i32 answer : {-1, 0}) {
    for (u32 row = 0; row < height; ++row) {
      const NothingLeft check;
      Record record(fiohost::Family::jpeg, "in.jpg");
      record.namePath("out.jpg");
      // Of a record that has no preview of its own the rows of one are asked for all the same.
      Stopper host(row, answer);
      session().reports.clear();
      EXPECT_EQ(session().plugin.write(record.handle(), &host, &Stopper::rowSource), -1);
      EXPECT_EQ(session().reports.code(), 0);
    }
  }
}

TEST_F(Rows, AnMpoWriteEndsAtAnyRowWithoutOne) {
  for (u32 row = 0; row < height; ++row) {
    const NothingLeft check;
    Record record(fiohost::Family::jpeg, "in.jpg");
    record.namePath("out.mpo");
    Stopper host(row);
    session().reports.clear();
    EXPECT_EQ(entry<host::MPOFileWriteEntry>(host::ordinalMPOFileWrite)(0, record.handle(), &host,
                                                                        &Stopper::mpoRow),
              0);
    EXPECT_EQ(session().reports.code(), host::errorWrite);
  }
}

// The count, two descriptions, then rows: the answer to a question is the result as it stands.
TEST_F(Rows, AnMpoWriteEndsAtAnyRequestWithAnyAnswer) {
  for (const i32 answer : answers) {
    for (u32 request = 0; request < 3 + height; ++request) {
      const NothingLeft check;
      Record record(fiohost::Family::jpeg, "in.jpg");
      record.namePath("out.mpo");
      Stopper host(request, answer);
      session().reports.clear();
      const int result = session().plugin.writeImage(record.handle(), &Stopper::onRequest, &host);
      if (request < 3) {
        EXPECT_EQ(result, answer);
        EXPECT_EQ(session().reports.code(), 0);
      } else {
        expectEnd(result, answer, host::errorWrite);
      }
    }
  }
}

// Counts that no file holds, and an image that is not among them.
TEST_F(Rows, NonsensicalCountsWriteNothing) {
  struct Answer {
    static int onRequest(int action, void* record, void* context, HGLOBAL) {
      if (action != host::requestQuestion) return 0;
      const auto& question = *static_cast<host::ImageRequest*>(record);
      if (question.question == host::questionCount) {
        *reinterpret_cast<host::MpoCountAnswer*>(question.answer) =
            *static_cast<host::MpoCountAnswer*>(context);
      }
      return 1;
    }
  };
  constexpr host::MpoCountAnswer counts[] = {
      {0, 0},    {1, 1},  {2, 2}, {2, ~0U}, {~0U, 0}, {~0U, ~0U}, {0x10000, 0xFFFF},
      {4096, 0}, {0, ~0U}};
  writeFile("kept.mpo", support::bytesOf("kept"));
  for (host::MpoCountAnswer count : counts) {
    const NothingLeft check;
    Record record(fiohost::Family::jpeg, "in.jpg");
    record.namePath("kept.mpo");
    EXPECT_EQ(session().plugin.writeImage(record.handle(), &Answer::onRequest, &count), 0)
        << +count.imageCount << " " << +count.position;
    EXPECT_EQ(readFile("kept.mpo"), support::bytesOf("kept"));
  }
}

}  // namespace
}  // namespace hosts
