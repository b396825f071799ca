#include "tests/fault/machine.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>

#include "platform/posix/diagnostics.h"

namespace fault {
namespace {

constexpr std::size_t mostRuns = 100000;

std::size_t openDescriptors() {
  const std::filesystem::directory_iterator all("/proc/self/fd");
  return static_cast<std::size_t>(std::distance(begin(all), end(all)));
}

struct State {
  platform::posix::LiveCounts live = platform::posix::liveCounts();
  std::size_t descriptors = openDescriptors();
  std::filesystem::path directory = std::filesystem::current_path();
};

void expectSame(const State& before, const Operation& operation) {
  const State after;
  EXPECT_LE(after.live.blocks, before.live.blocks + operation.keptBlocks) << "blocks left";
  EXPECT_GE(after.live.blocks, before.live.blocks) << "blocks freed that were not its own";
  EXPECT_EQ(after.live.locks, before.live.locks) << "locks left";
  EXPECT_EQ(after.live.files, before.live.files) << "files left open";
  EXPECT_EQ(after.live.mappings, before.live.mappings) << "mappings left";
  EXPECT_EQ(after.live.views, before.live.views) << "views left";
  EXPECT_EQ(after.descriptors, before.descriptors) << "descriptors left open";
  EXPECT_EQ(after.directory, before.directory);
}

struct Outcome {
  bool struck;
  bool succeeded;
};

Outcome runOnce(const Operation& operation, Resource resource, std::size_t number, Extent extent) {
  const Fault fault(resource, number, extent);
  const bool succeeded = operation.run();
  return {fault.struck(), succeeded};
}

// How a run in a process of its own ends. The program itself ends with 1 where nothing else is
// left to do.
enum ChildExit : int {
  clean = 0,
  endedByItself = 1,
  succeededAll = 2,
  failed = 3,
  leftSomething = 4
};

[[noreturn]] void endChild(const Operation& operation, const Outcome& outcome,
                           const State& before) {
  expectSame(before, operation);
  if (testing::Test::HasFailure()) _exit(leftSomething);
  if (!outcome.struck) _exit(outcome.succeeded ? clean : leftSomething);
  _exit(outcome.succeeded ? succeededAll : failed);
}

Outcome runInChild(const Operation& operation, Resource resource, std::size_t number,
                   Extent extent) {
  const State before;
  const pid_t child = fork();
  if (child == 0) endChild(operation, runOnce(operation, resource, number, extent), before);
  int status = 0;
  EXPECT_EQ(waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFEXITED(status)) << "ended by signal " << WTERMSIG(status);
  const int code = WIFEXITED(status) ? WEXITSTATUS(status) : static_cast<int>(leftSomething);
  EXPECT_NE(code, leftSomething) << "what the run left is told above";
  return {code != clean, code == clean || code == succeededAll};
}

}  // namespace

void failEverywhere(const Operation& operation, Resource resource, Extent extent) {
  for (std::size_t number = operation.firstUse; number < mostRuns; ++number) {
    SCOPED_TRACE(operation.name + ": " + nameOf(resource) + " use " + std::to_string(number) +
                 (extent == Extent::once ? " fails" : " and all later ones fail"));
    operation.prepare();
    const State before;
    const std::size_t heapBefore = liveHeapBlocks();
    const Outcome outcome = operation.ownProcess ? runInChild(operation, resource, number, extent)
                                                 : runOnce(operation, resource, number, extent);
    operation.check(outcome.succeeded);
    if (operation.countsHeap) {
      EXPECT_LE(liveHeapBlocks(), heapBefore) << "blocks of the C heap left";
    }
    expectSame(before, operation);
    if (!outcome.struck) {
      EXPECT_TRUE(outcome.succeeded) << "nothing failed";
      testing::Test::RecordProperty("runs", static_cast<int>(number));
      return;
    }
    if (testing::Test::HasFailure()) {  // one report is enough
      ADD_FAILURE() << "what failed first was wanted by" << whereStruck();
      return;
    }
  }
  FAIL() << operation.name << " never ran clean";
}

}  // namespace fault
