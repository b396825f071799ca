// A machine that fails on demand: the N-th block of global memory, or the N-th call on a file, of
// the whole process.
#pragma once

#include <cstddef>

namespace fault {

enum class Resource {
  globalMemory,  // GlobalAlloc and GlobalReAlloc
  files,         // opening, reading, writing, seeking, mapping, renaming
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
};

// Counts a use of the resource; true when it has to fail. For the interposed calls.
[[nodiscard]] bool strike(Resource resource) noexcept;

}  // namespace fault
