#include <cstring>

#include "tests/plugin/doubles/doubles.h"

using doubles::state;

namespace {

void pathsOf(void* locked, char** ansi, wchar_t** wide) {
  auto* record = static_cast<host::FileDataRecord*>(locked);
  const char* own = record->ansiPath[0] != '\0' ? record->ansiPath : nullptr;
  *ansi = const_cast<char*>(state().sourcePath.value_or(own));
  const bool hasWide = (record->pathFlags & host::pathFlagWide) != 0;
  *wide = hasWide ? reinterpret_cast<wchar_t*>(record->widePath) : nullptr;
}

}  // namespace

extern "C" {

int CheckFIOVersion(HMODULE plugin) {
  state().calls.emplace_back("CheckFIOVersion");
  return state().checkVersion(plugin);
}

int gfioGetFileSourcePath(HGLOBAL fileData, char** ansi, wchar_t** wide) {
  state().calls.emplace_back("gfioGetFileSourcePath");
  void* locked = GlobalLock(fileData);
  if (locked == nullptr) return 0;
  pathsOf(locked, ansi, wide);
  GlobalUnlock(fileData);
  return 1;
}

int gfioGetFileSourcePath_DS(void* locked, char** ansi, wchar_t** wide) {
  state().calls.emplace_back("gfioGetFileSourcePath_DS");
  pathsOf(locked, ansi, wide);
  return 1;
}

void ShrinkImage(host::u8* target, const host::u8* source, int, host::u32 sourceWidth,
                 host::u32 bytesPerPixel, const host::u32* columnMap, host::u32 targetWidth) {
  state().calls.emplace_back("ShrinkImage");
  state().shrink(target, source, sourceWidth, bytesPerPixel, columnMap, targetWidth);
}

int Prop_ReAllocFieldSpace(HGLOBAL* slot, int count) {
  state().calls.emplace_back("Prop_ReAllocFieldSpace:" + std::to_string(count));
  state().reservedSlots.push_back(slot);
  if (state().refuseReservation) return 0;
  if (state().refuseReservations > 0) {
    --state().refuseReservations;
    return 0;
  }
  return state().reserveNothing ? 1 : doubles::reserveFields(slot, count);
}

int Prop_AppendFieldData(HGLOBAL record, const void* descriptor) {
  state().calls.emplace_back("Prop_AppendFieldData");
  return state().refuseAppend ? 0 : doubles::appendField(record, descriptor);
}

int kFioShowProperty(HWND owner, void* header, int pageCount, void* pages, int flags) {
  state().calls.emplace_back("kFioShowProperty:" + std::to_string(pageCount));
  return state().showProperty(owner, *static_cast<host::PropertyDialogHeader*>(header), pageCount,
                              static_cast<host::PropertyPage*>(pages), flags);
}

int kFioWinHelp(HWND dialog, int command, host::u64 data) {
  state().calls.emplace_back("kFioWinHelp:" + std::to_string(command) + ":" + std::to_string(data));
  return state().winHelp(dialog, command, data);
}
}
