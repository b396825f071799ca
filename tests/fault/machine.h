// Running one operation on a machine that fails at every point in turn.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tests/fault/faults.h"

namespace fault {

struct Operation {
  std::string name;
  // Before each run, on a machine that does not fail.
  std::function<void()> prepare;
  // True when it reports success. Nothing may be left behind whatever it reports.
  std::function<bool()> run;
  // After each run, with what it reported: what must hold of files and records.
  std::function<void(bool succeeded)> check;
  // Blocks that a call leaves behind as described.
  std::size_t keptBlocks = 0;
  // Whether the C heap has to be as before too: not when the run begins with what lives on.
  bool countsHeap = false;
  // Whether the operation may end its process, as a program without memory does: each run has one
  // of its own then.
  bool ownProcess = false;
  // The first use that fails, where the earlier ones are those of another operation too.
  std::size_t firstUse = 1;
};

// Runs the operation with the N-th use of the resource failing, N = 1, 2, 3 ... (or from its first
// use on) until a run meets no failure; that one must succeed. After each: blocks, locks, files,
// mappings, views and the current directory as before.
void failEverywhere(const Operation& operation, Resource resource, Extent extent);

}  // namespace fault
