// The formats that the module serves, each described by a format-information record.
#include "host/format_info.h"

#include <cstring>

#include "frame/error_report.h"
#include "frame/module.h"
#include "host/kfioutil.h"
#include "platform/global_memory.h"

namespace frame {
namespace {

using host::FormatInfoRecord;
using host::u16;
using host::u32;
using host::u8;

constexpr int formatCount = 2;
constexpr UINT jpegDisplayName = 770;  // string of the resource library
constexpr int displayNameCapacity = 260;
constexpr u8 startOfImage[2] = {0xFF, 0xD8};  // T.81 B.1.1.3; an MPO file begins with it too

struct FormatRow {
  u16 formatId;
  u16 versionedFormatId;
  u32 hasDialogs;
  char extension[4];
  const char* fixedName;  // null: the name is a string of the resource library
  ErrorSource errors;
  host::i32 allocationPosition;
};

constexpr FormatRow jpegFormat{0x8268, 0x1268, 1, "JPG", nullptr, jpegErrors, 111};
constexpr FormatRow mpoFormat{0x8668, 0x1668, 0, "MPO", "Multi-Picture Format", mpoErrors, 211};

// A name that fills the field is cut without a terminator, as the record allows.
void writeDisplayName(const FormatRow& row, FormatInfoRecord& record) noexcept {
  char name[displayNameCapacity] = {};
  if (row.fixedName != nullptr) {
    std::strncpy(name, row.fixedName, sizeof name - 1);
  } else {
    LoadStringA(resourceLibrary(), jpegDisplayName, name, displayNameCapacity);
  }
  std::memcpy(record.displayName, name, sizeof record.displayName);
}

void describeFormat(const FormatRow& row, FormatInfoRecord& record) noexcept {
  record.formatId = row.formatId;
  record.versionedFormatId = CheckFIOVersion(moduleHandle()) == 1 ? row.versionedFormatId : u16{0};
  record.flag4 = 1;
  record.hasDialogs = row.hasDialogs;
  record.flag20 = 1;
  record.mask = 0xFFFFFFFF;
  std::memcpy(record.extension, row.extension, sizeof record.extension);
  writeDisplayName(row, record);
  record.reserved80 = 0;
  record.reserved88 = 0;
  record.reserved96 = 0;
  record.signatureLength = sizeof startOfImage;
  std::memcpy(record.signature, startOfImage, sizeof startOfImage);
}

HGLOBAL makeFormatInfo(const FormatRow& row) noexcept {
  platform::OwnedGlobal block(platform::movableZeroed, sizeof(FormatInfoRecord));
  platform::LockedGlobal lock(block.get());
  auto* record = lock.as<FormatInfoRecord>();
  if (record == nullptr) {
    reportError(host::errorMemoryOrOutput, row.errors, row.allocationPosition);
    return nullptr;
  }
  describeFormat(row, *record);
  lock.unlock();
  return block.release();
}

}  // namespace
}  // namespace frame

extern "C" {

int kfDLLGetFileFmtNum() noexcept { return frame::formatCount; }

HGLOBAL kfJpgGetFormatInfo() noexcept { return frame::makeFormatInfo(frame::jpegFormat); }

HGLOBAL kfMPOGetFormatInfo() noexcept { return frame::makeFormatInfo(frame::mpoFormat); }
}
