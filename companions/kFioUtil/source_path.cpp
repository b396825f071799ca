// Where the image of a file-data record comes from.
#include <cstddef>
#include <cstring>

#include "host/file_data.h"
#include "host/kfioutil.h"
#include "platform/global_memory.h"

namespace kFioUtil {
namespace {

using host::FileDataRecord;

constexpr std::size_t ansiPathEnd =
    offsetof(FileDataRecord, ansiPath) + sizeof(FileDataRecord::ansiPath);
constexpr std::size_t widePathEnd =
    offsetof(FileDataRecord, widePath) + sizeof(FileDataRecord::widePath);

// A field that its NUL does not end within the record holds no path that could be handed out.
char* findAnsiPath(void* record, std::size_t size) noexcept {
  if (size < ansiPathEnd) return nullptr;
  char* path = static_cast<char*>(record) + offsetof(FileDataRecord, ansiPath);
  const bool ends = std::memchr(path, '\0', sizeof(FileDataRecord::ansiPath)) != nullptr;
  return ends && *path != '\0' ? path : nullptr;
}

wchar_t* findWidePath(const void* record, std::size_t size) noexcept {
  if (size < widePathEnd) return nullptr;
  const auto* bytes = static_cast<const std::byte*>(record);
  host::u16 flags;
  std::memcpy(&flags, bytes + offsetof(FileDataRecord, pathFlags), sizeof(flags));
  if ((flags & host::pathFlagWide) == 0) return nullptr;
  host::u64 address;
  std::memcpy(&address, bytes + offsetof(FileDataRecord, widePath), sizeof(address));
  auto* path = reinterpret_cast<wchar_t*>(address);
  return path != nullptr && *path != L'\0' ? path : nullptr;
}

// 1 when the record names its source in either form.
int storePaths(void* record, std::size_t size, char** ansi, wchar_t** wide) noexcept {
  char* ansiPath = record != nullptr ? findAnsiPath(record, size) : nullptr;
  wchar_t* widePath = record != nullptr ? findWidePath(record, size) : nullptr;
  if (ansi != nullptr) *ansi = ansiPath;
  if (wide != nullptr) *wide = widePath;
  return ansiPath != nullptr || widePath != nullptr ? 1 : 0;
}

}  // namespace
}  // namespace kFioUtil

// The paths outlive the lock: a record stays where it is until it is freed or grown.
extern "C" int gfioGetFileSourcePath(HGLOBAL fileData, char** ansi, wchar_t** wide) {
  const platform::LockedGlobal record(fileData);
  return kFioUtil::storePaths(record.address(), record ? record.size() : 0, ansi, wide);
}

// The caller answers for the size of a record that it has locked itself.
extern "C" int gfioGetFileSourcePath_DS(void* lockedFileData, char** ansi, wchar_t** wide) {
  return kFioUtil::storePaths(lockedFileData, sizeof(host::FileDataRecord), ansi, wide);
}
