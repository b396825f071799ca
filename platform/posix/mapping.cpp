#include <fcntl.h>
#include <sys/mman.h>

#include <cerrno>

#include "platform/posix/objects.h"

namespace platform::posix {
namespace {

// Windows' granularity; a multiple of every page size here.
constexpr ULONGLONG viewAlignment = 0x10000;

ULONGLONG joined(DWORD high, DWORD low) { return ULONGLONG{high} << 32 | low; }

HANDLE createMapping(HANDLE handle, DWORD protection, ULONGLONG size) {
  if (protection != PAGE_READONLY) return failWith(ERROR_INVALID_PARAMETER, HANDLE{});
  const auto file = Objects::instance().file(handle);
  if (file == nullptr) return nullptr;
  if ((file->access & GENERIC_READ) == 0) return failWith(ERROR_ACCESS_DENIED, HANDLE{});
  struct stat status;
  Descriptor own(fcntl(file->descriptor.get(), F_DUPFD_CLOEXEC, 0));
  if (!own || fstat(own.get(), &status) != 0) return failWith(codeOfError(errno), HANDLE{});
  const auto fileSize = static_cast<ULONGLONG>(status.st_size);
  if (size == 0) size = fileSize;
  if (size == 0) return failWith(ERROR_FILE_INVALID, HANDLE{});
  if (size > fileSize) return failWith(ERROR_NOT_ENOUGH_MEMORY, HANDLE{});
  return Objects::instance().addMapping({std::move(own), file->identity, size});
}

LPVOID mapView(HANDLE handle, DWORD access, ULONGLONG offset, SIZE_T count) {
  const auto mapping = Objects::instance().mapping(handle);
  if (mapping == nullptr) return nullptr;
  if (access != FILE_MAP_READ) return failWith(ERROR_ACCESS_DENIED, LPVOID{});
  if (offset % viewAlignment != 0) return failWith(ERROR_MAPPED_ALIGNMENT, LPVOID{});
  if (offset >= mapping->size || count > mapping->size - offset) {
    return failWith(ERROR_ACCESS_DENIED, LPVOID{});
  }
  if (count == 0) count = mapping->size - offset;
  void* address = mmap(nullptr, count, PROT_READ, MAP_SHARED, mapping->descriptor.get(),
                       static_cast<off_t>(offset));
  if (address == MAP_FAILED) return failWith(codeOfError(errno), LPVOID{});
  try {
    Objects::instance().addView(address, count, mapping->identity);
  } catch (const std::bad_alloc&) {
    munmap(address, count);
    throw;
  }
  return address;
}

}  // namespace
}  // namespace platform::posix

using namespace platform::posix;

HANDLE CreateFileMappingA(HANDLE file, LPSECURITY_ATTRIBUTES, DWORD protection, DWORD sizeHigh,
                          DWORD sizeLow, LPCSTR name) noexcept {
  if (name != nullptr) return failWith(ERROR_INVALID_PARAMETER, HANDLE{});
  return guarded(HANDLE{},
                 [=] { return createMapping(file, protection, joined(sizeHigh, sizeLow)); });
}

LPVOID MapViewOfFile(HANDLE mapping, DWORD access, DWORD offsetHigh, DWORD offsetLow,
                     SIZE_T count) noexcept {
  return guarded(LPVOID{},
                 [=] { return mapView(mapping, access, joined(offsetHigh, offsetLow), count); });
}

BOOL UnmapViewOfFile(LPCVOID view) noexcept {
  return Objects::instance().removeView(view) || failWith(ERROR_INVALID_ADDRESS, false);
}
