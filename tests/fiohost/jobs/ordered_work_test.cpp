#include "fiohost/jobs/ordered_work.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <stdexcept>
#include <thread>
#include <vector>

namespace fiohost {
namespace {

using Numbers = std::vector<std::size_t>;

// A meeting of several threads; false when the others do not come.
class Meeting {
 public:
  explicit Meeting(unsigned awaited) : awaited_(awaited) {}

  bool come() {
    std::unique_lock lock(mutex_);
    --awaited_;
    changed_.notify_all();
    return changed_.wait_for(lock, std::chrono::seconds(20), [this] { return awaited_ == 0; });
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  unsigned awaited_;
};

bool always() { return true; }

TEST(OrderedWork, ResultsAreTakenInOrderWhicheverIsDoneFirst) {
  // The first piece ends last of all.
  constexpr std::size_t count = 20;
  std::atomic<std::size_t> done = 0;
  Numbers taken;
  runInOrder(count, 3,
             {always,
              [&](std::size_t number) {
                while (number == 0 && done < count - 1) std::this_thread::yield();
                ++done;
              },
              [&](std::size_t number) { taken.push_back(number); }});
  Numbers expected(count);
  for (std::size_t i = 0; i < count; ++i) expected[i] = i;
  EXPECT_EQ(taken, expected);
}

TEST(OrderedWork, AsManyPiecesAreDoneAtATimeAsThereAreThreads) {
  Meeting meeting(3);
  std::atomic<int> met = 0;
  runInOrder(3, 3,
             {always, [&](std::size_t) { met += meeting.come() ? 1 : 0; }, [](std::size_t) {}});
  EXPECT_EQ(met, 3);
}

TEST(OrderedWork, NoMorePiecesAreDoneAtATimeThanThereAreThreads) {
  std::atomic<int> busy = 0;
  std::atomic<int> most = 0;
  runInOrder(50, 2,
             {always,
              [&](std::size_t) {
                const int now = ++busy;
                int seen = most;
                while (seen < now && !most.compare_exchange_weak(seen, now)) continue;
                std::this_thread::yield();
                --busy;
              },
              [](std::size_t) {}});
  EXPECT_LE(most, 2);
}

TEST(OrderedWork, OneThreadIsTheCallersAndTakesEachPieceBeforeTheNextIsBegun) {
  const auto caller = std::this_thread::get_id();
  Numbers begun;
  Numbers taken;
  runInOrder(3, 1,
             {always,
              [&](std::size_t number) {
                EXPECT_EQ(std::this_thread::get_id(), caller);
                EXPECT_EQ(taken.size(), number);
                begun.push_back(number);
              },
              [&](std::size_t number) { taken.push_back(number); }});
  EXPECT_EQ(begun, (Numbers{0, 1, 2}));
  EXPECT_EQ(taken, begun);
}

TEST(OrderedWork, TakingHappensOnTheCallersThread) {
  const auto caller = std::this_thread::get_id();
  runInOrder(8, 4,
             {always, [](std::size_t) {},
              [&](std::size_t) { EXPECT_EQ(std::this_thread::get_id(), caller); }});
}

class StoppedWork : public testing::TestWithParam<unsigned> {};
INSTANTIATE_TEST_SUITE_P(Threads, StoppedWork, testing::Values(1, 3));

TEST_P(StoppedWork, WhatIsBegunIsTakenAndNothingElse) {
  std::atomic<std::size_t> begun = 0;
  Numbers taken;
  runInOrder(100, GetParam(),
             {[&] { return begun < 10; }, [&](std::size_t) { ++begun; },
              [&](std::size_t number) { taken.push_back(number); }});
  EXPECT_EQ(taken.size(), begun);
  EXPECT_GE(taken.size(), 10U);
  EXPECT_LT(taken.size(), 20U);
  for (std::size_t i = 0; i < taken.size(); ++i) EXPECT_EQ(taken[i], i);
}

TEST_P(StoppedWork, WhatAPieceThrowsIsThrownInItsTurn) {
  Numbers taken;
  const auto run = [&] {
    runInOrder(10, GetParam(),
               {always,
                [](std::size_t number) {
                  if (number == 4) throw std::runtime_error("the fifth");
                },
                [&](std::size_t number) { taken.push_back(number); }});
  };
  EXPECT_THROW(run(), std::runtime_error);
  EXPECT_EQ(taken, (Numbers{0, 1, 2, 3}));
}

TEST_P(StoppedWork, WhatTakingThrowsEndsTheWork) {
  constexpr std::size_t count = 100000;  // minutes of work
  std::atomic<std::size_t> begun = 0;
  const auto work = [&](std::size_t) {
    ++begun;
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  };
  const auto take = [](std::size_t) { throw std::runtime_error("not taken"); };
  EXPECT_THROW(runInOrder(count, GetParam(), {always, work, take}), std::runtime_error);
  EXPECT_LT(begun, count);
}

TEST_P(StoppedWork, NothingToDoIsDone) {
  runInOrder(0, GetParam(), {always, [](std::size_t) { FAIL(); }, [](std::size_t) { FAIL(); }});
}

}  // namespace
}  // namespace fiohost
