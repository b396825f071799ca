#include "fiohost/companions.h"

namespace fiohost {

Codec::Codec(const std::filesystem::path& folder)
    : module(folder / "klibjpg.dll"),
      readFile(module.entry<int(const wchar_t*, const void*, void*)>("kJpgFileReadExW")),
      describeStream(module.entry<int(const void*, void*, void*)>("kJpgStreamGetInfo")) {}

ExifLibrary::ExifLibrary(const std::filesystem::path& folder)
    : module(folder / "kExifLib.dll"),
      beginRead(module.entry<void*(const wchar_t*)>("kRExifBeginReadW")),
      isExifExist(module.entry<int(void*)>("kRExifIsExifExist")),
      isThumbnailExist(module.entry<int(void*)>("kRExifIsThumbnailExist")),
      getThumbnailData(module.entry<host::i64(void*, host::u64*)>("kRExifGetThumbnailData")),
      endRead(module.entry<void(void*)>("kRExifEndRead")) {}

FileUtilities::FileUtilities(const std::filesystem::path& folder)
    : module(folder / "kFioUtil.dll"),
      freeProperty(module.entry<void(HGLOBAL)>("kfioFreeProperty")),
      reserveFields(module.entry<int(HGLOBAL*, int)>("Prop_ReAllocFieldSpace")),
      appendField(module.entry<int(HGLOBAL, const void*)>("Prop_AppendFieldData")) {}

ErrorReports::ErrorReports(const std::filesystem::path& folder)
    : module_(folder / "k32Comm.dll"),
      lastError_(module_.entry<void(host::ErrorReport*)>("kfioLastError")),
      clearError_(module_.entry<void()>("kfioClearError")) {}

int ErrorReports::code() const {
  host::ErrorReport report = {};
  lastError_(&report);
  return report.count > 0 ? report.code : 0;
}

}  // namespace fiohost
