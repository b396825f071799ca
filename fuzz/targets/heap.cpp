// A camera-data heap: parsed, its fields edited by the input's first bytes, and written back.
#include <algorithm>

#include "fuzz/attach.h"
#include "fuzz/input.h"
#include "platform/global_memory.h"
#include "property/heap_expansion.h"
#include "property/heap_write_back.h"
#include "property/property_record.h"

namespace {

constexpr std::size_t editBytes = 4;

void editNumbers(HGLOBAL record, fuzz::Bytes edits) {
  const platform::LockedGlobal lock(record);
  const auto* header = lock.as<host::PropertyHeader>();
  if (header == nullptr) return;
  auto* fields = reinterpret_cast<host::PropertyField*>(static_cast<host::u8*>(lock.address()) +
                                                        sizeof(host::PropertyHeader));
  for (int index = 1; index < header->fieldCount; ++index) {
    host::PropertyField& field = fields[index];
    const bool number = field.valueKind != host::kindText && field.valueKind != host::kindBlock;
    if (number) field.data ^= edits[static_cast<std::size_t>(index) % editBytes];
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::attachOnce();
  static_cast<void>(fuzz::session());
  if (size < editBytes) return 0;
  const fuzz::NothingLeft check;
  const fuzz::Bytes heap(data + editBytes, size - editBytes);
  fuzz::PropertySlot slot;
  const auto length = static_cast<host::u16>(std::min<std::size_t>(heap.size(), 0xFFFF));
  static_cast<void>(property::expandHeap(frame::resourceLibrary(), heap, length, slot.address()));
  editNumbers(slot.handle(), {data, editBytes});
  static_cast<void>(property::writeHeapBack(frame::resourceLibrary(), slot.handle()));
  return 0;
}
