// The companion libraries that the host itself calls, loaded from the plug-in's folder.
#pragma once

#include <filesystem>

#include "fiohost/module.h"
#include "host/k32comm.h"
#include "host/klibjpg.h"

namespace fiohost {

// klibjpg.dll: what a file's header says.
struct Codec {
  explicit Codec(const std::filesystem::path& folder);

  Module module;
  int (*readFile)(const wchar_t* path, const void* callback16, void* zero);
  int (*describeStream)(const void* stream16, void* imageInfo32, void* extraInfo24);
};

// kExifLib.dll: the thumbnail that a file carries.
struct ExifLibrary {
  explicit ExifLibrary(const std::filesystem::path& folder);

  Module module;
  void* (*beginRead)(const wchar_t* path);
  int (*isExifExist)(void* reader);
  int (*isThumbnailExist)(void* reader);
  host::i64 (*getThumbnailData)(void* reader, host::u64* words);
  void (*endRead)(void* reader);
};

// kFioUtil.dll: property records belong to whoever holds the file data.
struct FileUtilities {
  explicit FileUtilities(const std::filesystem::path& folder);

  Module module;
  void (*freeProperty)(HGLOBAL property);
  int (*reserveFields)(HGLOBAL* slot, int count);
  int (*appendField)(HGLOBAL property, const void* descriptor88);
};

// k32Comm.dll: what the plug-in reported last.
class ErrorReports {
 public:
  explicit ErrorReports(const std::filesystem::path& folder);

  // Forgets earlier reports of this thread.
  void clear() const { clearError_(); }
  // The code of the last report since clear(), 0 when there was none.
  [[nodiscard]] int code() const;

 private:
  Module module_;
  void (*lastError_)(host::ErrorReport* report);
  void (*clearError_)();
};

}  // namespace fiohost
