#include "tests/plugin/doubles/doubles.h"

#include <cstring>

#include "host/property_record.h"

namespace doubles {
namespace {

using host::PropertyField;
using host::PropertyHeader;

std::size_t recordBytes(std::size_t fields) {
  return sizeof(PropertyHeader) + fields * sizeof(PropertyField);
}

HGLOBAL newRecord(std::size_t room) {
  HGLOBAL record = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, recordBytes(room + 1));
  if (record == nullptr) return nullptr;
  auto* header = static_cast<PropertyHeader*>(GlobalLock(record));
  header->fieldCount = 1;
  header->recordSize = static_cast<host::u32>(recordBytes(1));
  auto* first = reinterpret_cast<PropertyField*>(header + 1);
  first->descriptorSize = sizeof *first;
  first->fieldId = host::fieldHeader;
  GlobalUnlock(record);
  return record;
}

}  // namespace

void Doubles::reset() {
  *this = Doubles{};
  checkVersion = [](HMODULE) { return 1; };
  fileGetInfo = [](auto...) { return 0; };
  fileGetInfoWide = [](auto...) { return 0; };
  streamGetInfo = [](auto...) { return 0; };
  fileRead = [](auto...) { return 1; };
  fileReadWide = [](auto...) { return 1; };
  streamRead = [](auto...) { return 1; };
  read = [](auto...) { return 1; };
  write = [](auto...) { return 1; };
  streamWrite = [](auto...) { return 0; };
  exifBegin = [](auto...) { return nullptr; };
  exifBeginWide = [](auto...) { return nullptr; };
  thumbnailData = [](auto...) { return -1; };
  shrink = [](auto...) {};
  showProperty = [](auto&&...) { return 0; };
  dialogStart = [](auto...) { return 0; };
  winHelp = [](auto...) { return 1; };
}

Doubles& state() {
  static Doubles all;
  return all;
}

int reserveFields(HGLOBAL* slot, int count) {
  HGLOBAL record = nullptr;
  std::memcpy(&record, slot, sizeof record);
  const auto room = static_cast<std::size_t>(count);
  if (record == nullptr) {
    record = newRecord(room);
  } else {
    const auto* header = static_cast<PropertyHeader*>(GlobalLock(record));
    const auto fields = static_cast<std::size_t>(header->fieldCount);
    GlobalUnlock(record);
    record = GlobalReAlloc(record, recordBytes(fields + room), GMEM_MOVEABLE | GMEM_ZEROINIT);
  }
  if (record == nullptr) return 0;
  std::memcpy(slot, &record, sizeof record);
  return 1;
}

int appendField(HGLOBAL record, const void* descriptor) {
  auto* header = static_cast<PropertyHeader*>(GlobalLock(record));
  if (header == nullptr) return 0;
  auto* fields = reinterpret_cast<PropertyField*>(header + 1);
  std::memcpy(fields + header->fieldCount, descriptor, sizeof *fields);
  ++header->fieldCount;
  header->recordSize =
      static_cast<host::u32>(recordBytes(static_cast<std::size_t>(header->fieldCount)));
  GlobalUnlock(record);
  return 1;
}

void freeProperty(HGLOBAL record) {
  if (record == nullptr) return;
  auto* header = static_cast<PropertyHeader*>(GlobalLock(record));
  const auto* fields = reinterpret_cast<const PropertyField*>(header + 1);
  for (int index = 0; index < header->fieldCount; ++index) {
    const PropertyField& field = fields[index];
    const bool block = field.valueKind == host::kindBlock || field.valueKind == host::kindText;
    if (block && field.data != 0) GlobalFree(reinterpret_cast<HGLOBAL>(field.data));
  }
  GlobalUnlock(record);
  GlobalFree(record);
}

}  // namespace doubles
