#include "property/heap_errors.h"

#include "frame/error_report.h"

namespace property {

void reportHeapMemory(HeapMemory place) noexcept {
  constexpr host::i32 firstPosition = 540;
  const auto number = static_cast<host::i32>(place);
  frame::reportError(host::errorMemoryOrOutput, {870, 873, number}, firstPosition + number);
}

}  // namespace property
