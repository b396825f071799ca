#include "tests/fault/faults.h"

#include <cxxabi.h>
#include <dlfcn.h>
#include <execinfo.h>

#include <atomic>
#include <cstdlib>
#include <string_view>

#include "platform/posix/diagnostics.h"

namespace fault {
namespace {

constexpr int none = -1;

std::atomic<int> armedResource = none;
std::atomic<std::size_t> used = 0;
std::atomic<std::size_t> firstFailure = 0;
std::atomic<bool> failsEverAfter = false;

thread_local int exemptions = 0;

constexpr int deepest = 30;
constexpr std::size_t longestName = 120;
void* stack[deepest];
int depth = backtrace(stack, 1);  // the first call makes its preparations

void noteStack() noexcept {
  const Exempt exempt;
  depth = backtrace(stack, deepest);
}

bool mayAllocate(std::size_t) { return !strike(Resource::globalMemory); }

}  // namespace

const char* nameOf(Resource resource) {
  constexpr const char* names[] = {"global memory", "heap", "files", "calls", "codec events"};
  return names[static_cast<int>(resource)];
}

Fault::Fault(Resource resource, std::size_t number, Extent extent) {
  used = 0;
  depth = 0;
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

std::size_t Fault::uses() const { return used; }

std::string whereStruck() {
  std::string calls;
  for (int at = 0; at < depth; ++at) {
    Dl_info place = {};
    if (dladdr(stack[at], &place) == 0 || place.dli_sname == nullptr) continue;
    int failed = 0;
    char* const name = abi::__cxa_demangle(place.dli_sname, nullptr, nullptr, &failed);
    const std::string_view shown = failed == 0 ? name : place.dli_sname;
    calls.append("\n  ").append(shown.substr(0, longestName));
    std::free(name);
  }
  return calls;
}

Exempt::Exempt() noexcept { ++exemptions; }

Exempt::~Exempt() { --exemptions; }

bool strike(Resource resource) noexcept {
  if (armedResource != static_cast<int>(resource) || exemptions != 0) return false;
  const std::size_t number = ++used;
  if (number == firstFailure) noteStack();
  return failsEverAfter ? number >= firstFailure : number == firstFailure;
}

}  // namespace fault
