// How the camera-data heap reports that memory could not be had.
#pragma once

#include "frame/error_report.h"

namespace property {

// The places that allocate, by the number under which they report.
enum class HeapMemory : host::i32 {
  records = 1,
  values,
  fieldRoom,
  propertyRecord,
  heapField,
  textField,
  writtenHeap,
  treeItems,
};

inline void reportHeapMemory(HeapMemory place) noexcept {
  constexpr host::i32 firstPosition = 540;
  const auto number = static_cast<host::i32>(place);
  frame::reportError(host::errorMemoryOrOutput, {870, 873, number}, firstPosition + number);
}

}  // namespace property
