// Test doubles of the companion libraries. Each double is a module in "fio" beside the test
// program, found and bound by the plug-in like the real one; every call lands here, in one object
// that the test program and the double modules share.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "host/file_data.h"
#include "host/k32comm.h"
#include "host/k32misc.h"
#include "host/kexiflib.h"
#include "host/kfioutil.h"
#include "host/klibjpg.h"
#include "host/property_pages.h"

namespace doubles {

struct KF_DOUBLES_API Doubles {
  // Calls in order: the export's name, for some followed by ":" and an argument.
  std::vector<std::string> calls;
  // Error reports in order, as c32SetDLLErrInfo got them.
  std::vector<host::ErrorReport> reports;
  std::string iniPath;

  // What each export does; the defaults succeed where a companion would and do nothing else.
  std::function<int(HMODULE)> checkVersion;
  std::function<int(const char*, host::ImageHeader*, host::ExtraInformation*)> fileGetInfo;
  std::function<int(const wchar_t*, host::ImageHeader*, host::ExtraInformation*)> fileGetInfoWide;
  std::function<int(const host::StreamDescriptor*, host::ImageHeader*, host::ExtraInformation*)>
      streamGetInfo;
  std::function<int(const char*, const host::CodecCallback&)> fileRead;
  std::function<int(const wchar_t*, const host::CodecCallback&)> fileReadWide;
  std::function<int(const host::StreamDescriptor*, host::StreamImage*)> streamRead;
  std::function<int(const host::InputDescriptor&, const host::CodecCallback&)> read;
  std::function<int(const host::OutputDescriptor&, const host::CodecCallback&,
                    const host::WriteOptions&)>
      write;
  std::function<int(host::StreamDescriptor*, const host::StreamImage&, const host::WriteOptions&)>
      streamWrite;
  std::function<void*(const char*)> exifBegin;
  std::function<void*(const wchar_t*)> exifBeginWide;
  int exifExists = 0;
  int thumbnailExists = 0;
  std::function<host::i64(host::u64*)> thumbnailData;
  std::function<void(host::u8*, const host::u8*, host::u32, host::u32, const host::u32*, host::u32)>
      shrink;
  // The frame of the property dialog: its result.
  std::function<int(HWND, host::PropertyDialogHeader&, int, host::PropertyPage*, int)> showProperty;
  std::function<int(HWND dialog, int one, WPARAM, LPARAM)> dialogStart;
  std::function<int(HWND dialog, int command, host::u64 data)> winHelp;
  std::optional<const char*> sourcePath;  // the host's answer instead of the record's own name
  // Property storage works like the real one unless refused.
  bool refuseReservation = false;
  int refuseReservations = 0;   // only so many, from now on
  bool reserveNothing = false;  // reservations succeed, and there is no more room than before
  bool refuseAppend = false;
  std::vector<HGLOBAL*> reservedSlots;

  // Back to the defaults, with nothing recorded.
  void reset();
};

KF_DOUBLES_API Doubles& state();

// Storage as the utility library keeps it: reserve room, then append behind the last field.
KF_DOUBLES_API int reserveFields(HGLOBAL* slot, int count);
KF_DOUBLES_API int appendField(HGLOBAL record, const void* descriptor);
// Frees a property record with its data blocks.
KF_DOUBLES_API void freeProperty(HGLOBAL record);

}  // namespace doubles
