#include "exif/field_room.h"

#include <algorithm>
#include <cstring>

namespace exif {

HGLOBAL recordIn(const HGLOBAL* slot) noexcept {
  HGLOBAL record = nullptr;
  std::memcpy(&record, slot, sizeof record);
  return record;
}

FieldRoom::FieldRoom(const HGLOBAL* slot) noexcept
    : lock_(recordIn(slot)), header_(lock_.as<host::PropertyHeader>()) {
  if (header_ == nullptr) return;
  next_ = static_cast<host::u64>(std::max(header_->fieldCount, 0));
  capacity_ = (lock_.size() - sizeof *header_) / sizeof(host::PropertyField);
}

void FieldRoom::add(const host::PropertyField& field) noexcept {
  auto* fields = reinterpret_cast<host::PropertyField*>(header_ + 1);
  fields[next_++] = field;
}

void FieldRoom::publish() noexcept { header_->fieldCount = static_cast<host::i32>(next_); }

}  // namespace exif
