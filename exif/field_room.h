// The room behind a property record's last field, where the readers write their descriptors.
#pragma once

#include "host/kfioutil.h"
#include "host/property_record.h"
#include "platform/global_memory.h"

namespace exif {

// Reserves room for so many fields more; the record's handle may change. False when refused.
[[nodiscard]] inline bool reserveFields(HGLOBAL* slot, host::u32 count) noexcept {
  return Prop_ReAllocFieldSpace(slot, static_cast<int>(count)) != 0;
}

// The record that the slot names; the slot may lie unaligned in a packed record.
[[nodiscard]] HGLOBAL recordIn(const HGLOBAL* slot) noexcept;

// The record that the slot names, locked while this object lives. Fields that are added count from
// publish() on. Bounded by what the block really has, whatever was reserved.
class FieldRoom {
 public:
  explicit FieldRoom(const HGLOBAL* slot) noexcept;
  FieldRoom(const FieldRoom&) = delete;
  FieldRoom& operator=(const FieldRoom&) = delete;

  // False when the record cannot be locked.
  explicit operator bool() const noexcept { return header_ != nullptr; }
  [[nodiscard]] bool full() const noexcept { return next_ >= capacity_; }
  // Writes the descriptor into the next free place; there must be one.
  void add(const host::PropertyField& field) noexcept;
  // Writes the new field count. The record size word is the appender's and stays.
  void publish() noexcept;

 private:
  platform::LockedGlobal lock_;
  host::PropertyHeader* header_;
  host::u64 next_ = 0;
  host::u64 capacity_ = 0;
};

}  // namespace exif
