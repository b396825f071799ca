// The C heap in front of the C library's: it fails when told so. operator new, the C++ library, the
// codec library and global memory all come here.
#include <dlfcn.h>
#include <link.h>

#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "tests/fault/faults.h"

extern "C" {
// The C library's own, under the names by which it offers them to whoever replaces malloc.
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* block);
}

namespace {

std::atomic<std::size_t> live = 0;

struct CodeRange {
  std::uintptr_t begin = 0;
  std::uintptr_t end = 0;
};

int takeLoader(dl_phdr_info* module, std::size_t, void* out) {
  if (std::string_view(module->dlpi_name).find("/ld-") == std::string_view::npos) return 0;
  auto& range = *static_cast<CodeRange*>(out);
  for (int index = 0; index < module->dlpi_phnum; ++index) {
    const auto& part = module->dlpi_phdr[index];
    if (part.p_type != PT_LOAD || (part.p_flags & PF_X) == 0) continue;
    range.begin = module->dlpi_addr + part.p_vaddr;
    range.end = range.begin + part.p_memsz;
  }
  return 1;
}

// Where the loader's code lies. It allocates for thread-local variables of a library when they are
// first touched.
const CodeRange loader = [] {
  CodeRange range;
  dl_iterate_phdr(&takeLoader, &range);
  return range;
}();

bool heapFails(const void* caller) noexcept {
  const auto address = reinterpret_cast<std::uintptr_t>(caller);
  if (address >= loader.begin && address < loader.end) return false;
  if (!fault::strike(fault::Resource::heap)) return false;
  errno = ENOMEM;
  return true;
}

void* counted(void* block) noexcept {
  if (block != nullptr) ++live;
  return block;
}

}  // namespace

namespace fault {

std::size_t liveHeapBlocks() noexcept { return live; }

}  // namespace fault

extern "C" {

void* malloc(std::size_t size) noexcept {
  return heapFails(__builtin_return_address(0)) ? nullptr : counted(__libc_malloc(size));
}
void* calloc(std::size_t count, std::size_t size) noexcept {
  return heapFails(__builtin_return_address(0)) ? nullptr : counted(__libc_calloc(count, size));
}
void* realloc(void* block, std::size_t size) noexcept {
  if (heapFails(__builtin_return_address(0))) return nullptr;
  void* const moved = __libc_realloc(block, size);
  if (block == nullptr) return counted(moved);
  if (moved == nullptr && size == 0) --live;
  return moved;
}
void* memalign(std::size_t alignment, std::size_t size) noexcept {
  return heapFails(__builtin_return_address(0)) ? nullptr
                                                : counted(__libc_memalign(alignment, size));
}
void* aligned_alloc(std::size_t alignment, std::size_t size) noexcept {
  return heapFails(__builtin_return_address(0)) ? nullptr
                                                : counted(__libc_memalign(alignment, size));
}
int posix_memalign(void** out, std::size_t alignment, std::size_t size) noexcept {
  if (heapFails(__builtin_return_address(0))) return ENOMEM;
  *out = counted(__libc_memalign(alignment, size));
  return *out != nullptr ? 0 : ENOMEM;
}
void free(void* block) noexcept {
  if (block != nullptr) --live;
  __libc_free(block);
}

void* dlopen(const char* path, int mode) noexcept {
  static auto* const real =
      reinterpret_cast<void* (*)(const char*, int)>(dlsym(RTLD_NEXT, "dlopen"));
  const fault::Exempt exempt;
  return real(path, mode);
}
int dlclose(void* library) noexcept {
  static auto* const real = reinterpret_cast<int (*)(void*)>(dlsym(RTLD_NEXT, "dlclose"));
  const fault::Exempt exempt;
  return real(library);
}

}  // extern "C"
