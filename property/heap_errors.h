// How the camera-data heap reports that memory could not be had.
#pragma once

#include "host/types.h"

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

// Whoever holds a heap says how: the plug-in tells its host (heap_errors.cpp).
void reportHeapMemory(HeapMemory place) noexcept;

}  // namespace property
