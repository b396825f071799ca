// A machine that fails on demand: the N-th use of one of its resources, counted over the whole
// process.
#pragma once

#include <cstddef>
#include <string>

namespace fault {

enum class Resource {
  globalMemory,  // GlobalAlloc and GlobalReAlloc
  heap,          // malloc and its like, operator new and global memory with it
  files,         // opening, reading, writing, seeking, mapping, renaming
  calls,         // calls of companions that can fail, and the host's answers to callbacks
  events,        // what the codec does between two events: it fails instead of raising the next
};

[[nodiscard]] const char* nameOf(Resource resource);

enum class Extent { once, everAfter };

// Armed while it lives. number counts from 1.
class Fault {
 public:
  Fault(Resource resource, std::size_t number, Extent extent);
  Fault(const Fault&) = delete;
  Fault& operator=(const Fault&) = delete;
  ~Fault();

  // Whether the number was reached, so that something failed.
  [[nodiscard]] bool struck() const;
  // How often the resource was used.
  [[nodiscard]] std::size_t uses() const;
};

// The calls that led to the last fault's first failure, innermost first, for messages.
[[nodiscard]] std::string whereStruck();

// Counts a use of the resource; true when it has to fail. For the interposed calls.
[[nodiscard]] bool strike(Resource resource) noexcept;

// While it lives this thread's uses are not counted and do not fail: what the system's loader does
// on behalf of a call belongs to no operation, and the loader ends a process that has no memory for
// it.
class Exempt {
 public:
  Exempt() noexcept;
  Exempt(const Exempt&) = delete;
  Exempt& operator=(const Exempt&) = delete;
  ~Exempt();
};

// Blocks of the C heap that live at the moment.
[[nodiscard]] std::size_t liveHeapBlocks() noexcept;

}  // namespace fault
