#include "bench/beside/segment_walk.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <span>

namespace bench {
namespace {

using host::u32;
using host::u8;

constexpr u8 startOfScan = 0xDA;

bool isFrameHeader(u8 marker) {
  const bool tables = marker == 0xC4 || marker == 0xC8 || marker == 0xCC;
  return marker >= 0xC0 && marker <= 0xCF && !tables;
}

u32 number(std::span<const u8> bytes, std::size_t at) { return bytes[at] * 256U + bytes[at + 1]; }

u32 walk(std::span<const u8> bytes) {
  u32 found = 0;
  for (std::size_t at = 2; at + 9 <= bytes.size() && bytes[at] == 0xFF;) {
    const u8 marker = bytes[at + 1];
    if (marker == startOfScan) break;
    if (isFrameHeader(marker)) found = number(bytes, at + 5) + number(bytes, at + 7);
    at += 2 + number(bytes, at + 2);
  }
  return found;
}

}  // namespace

u32 walkSegments(const std::filesystem::path& path) {
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  struct stat status;
  if (file < 0 || fstat(file, &status) != 0) return 0;
  const auto size = static_cast<std::size_t>(status.st_size);
  void* view = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file, 0);
  close(file);
  if (view == MAP_FAILED) return 0;
  const u32 found = walk({static_cast<const u8*>(view), size});
  munmap(view, size);
  return found;
}

}  // namespace bench
