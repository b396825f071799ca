#include "tests/fault/faults.h"

#include <atomic>

#include "platform/posix/diagnostics.h"

namespace fault {
namespace {

constexpr int none = -1;

std::atomic<int> armedResource = none;
std::atomic<std::size_t> used = 0;
std::atomic<std::size_t> firstFailure = 0;
std::atomic<bool> failsEverAfter = false;

thread_local int exemptions = 0;

bool mayAllocate(std::size_t) { return !strike(Resource::globalMemory); }

}  // namespace

const char* nameOf(Resource resource) {
  constexpr const char* names[] = {"global memory", "heap", "files", "calls", "codec events"};
  return names[static_cast<int>(resource)];
}

Fault::Fault(Resource resource, std::size_t number, Extent extent) {
  used = 0;
  firstFailure = number;
  failsEverAfter = extent == Extent::everAfter;
  platform::posix::setAllocationFilter(&mayAllocate);
  armedResource = static_cast<int>(resource);
}

Fault::~Fault() {
  armedResource = none;
  platform::posix::setAllocationFilter(nullptr);
}

bool Fault::struck() const { return used >= firstFailure; }

Exempt::Exempt() noexcept { ++exemptions; }

Exempt::~Exempt() { --exemptions; }

bool strike(Resource resource) noexcept {
  if (armedResource != static_cast<int>(resource) || exemptions != 0) return false;
  const std::size_t number = ++used;
  return failsEverAfter ? number >= firstFailure : number == firstFailure;
}

}  // namespace fault
