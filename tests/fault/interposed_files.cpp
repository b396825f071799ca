// The C library's calls in front of the C library: they fail when told so. The program's own
// definitions are found before those of any library that it loads.
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>

#include "tests/fault/faults.h"

namespace {

using fault::Resource;

template <typename Function>
Function* next(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

bool fileFails(int error) {
  if (!fault::strike(Resource::files)) return false;
  errno = error;
  return true;
}

}  // namespace

extern "C" {

int open(const char* path, int flags, ...) {
  std::va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
  va_end(arguments);
  static auto* const real = next<int(const char*, int, ...)>("open");
  return fileFails(EACCES) ? -1 : real(path, flags, mode);
}
ssize_t read(int file, void* buffer, std::size_t count) {
  static auto* const real = next<ssize_t(int, void*, std::size_t)>("read");
  return fileFails(EIO) ? -1 : real(file, buffer, count);
}
ssize_t write(int file, const void* data, std::size_t count) {
  static auto* const real = next<ssize_t(int, const void*, std::size_t)>("write");
  return file > STDERR_FILENO && fileFails(ENOSPC) ? -1 : real(file, data, count);
}
off_t lseek(int file, off_t distance, int origin) noexcept {
  static auto* const real = next<off_t(int, off_t, int)>("lseek");
  return fileFails(EIO) ? -1 : real(file, distance, origin);
}
int fstat(int file, struct stat* status) noexcept {
  static auto* const real = next<int(int, struct stat*)>("fstat");
  return fileFails(EIO) ? -1 : real(file, status);
}
void* mmap(void* address, std::size_t length, int protection, int flags, int file,
           off_t offset) noexcept {
  static auto* const real = next<void*(void*, std::size_t, int, int, int, off_t)>("mmap");
  if (file >= 0 && fileFails(ENOMEM)) return MAP_FAILED;
  return real(address, length, protection, flags, file, offset);
}
int ftruncate(int file, off_t length) noexcept {
  static auto* const real = next<int(int, off_t)>("ftruncate");
  return fileFails(ENOSPC) ? -1 : real(file, length);
}
int rename(const char* from, const char* to) noexcept {
  static auto* const real = next<int(const char*, const char*)>("rename");
  return fileFails(EACCES) ? -1 : real(from, to);
}
std::size_t fwrite(const void* data, std::size_t size, std::size_t count, std::FILE* file) {
  static auto* const real =
      next<std::size_t(const void*, std::size_t, std::size_t, std::FILE*)>("fwrite");
  const bool console = file == stdout || file == stderr;
  return !console && fileFails(ENOSPC) ? 0 : real(data, size, count, file);
}

}  // extern "C"
