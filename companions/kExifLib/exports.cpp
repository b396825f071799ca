// The reader that hosts hold by its address. Every function bears a null reader.
#include <exception>
#include <memory>
#include <span>
#include <vector>

#include "companions/kExifLib/exif_segment.h"
#include "companions/kExifLib/thumbnail.h"
#include "host/kexiflib.h"

namespace kExifLib {
namespace {

struct Reader {
  std::vector<host::u8> tiff;
  std::span<const host::u8> thumbnail;  // a part of tiff
};

// Null only when the file cannot be opened or memory is out: a file without EXIF has a reader too.
template <typename Character>
Reader* beginRead(const Character* path) noexcept {
  try {
    const auto file = std::make_unique<FileStream>(path);
    if (!file->isOpen()) return nullptr;
    auto reader = std::make_unique<Reader>();
    reader->tiff = readExifTiff(*file);
    reader->thumbnail = findThumbnail(reader->tiff);
    return reader.release();
  } catch (const std::exception&) {
    return nullptr;
  }
}

const Reader* asReader(void* reader) noexcept { return static_cast<const Reader*>(reader); }

}  // namespace
}  // namespace kExifLib

using kExifLib::asReader;

extern "C" void* kRExifBeginRead(const char* path) { return kExifLib::beginRead(path); }

extern "C" void* kRExifBeginReadW(const wchar_t* path) { return kExifLib::beginRead(path); }

extern "C" int kRExifIsExifExist(void* reader) {
  return reader != nullptr && kExifLib::isTiff(asReader(reader)->tiff) ? 1 : 0;
}

extern "C" int kRExifIsThumbnailExist(void* reader) {
  return reader != nullptr && !asReader(reader)->thumbnail.empty() ? 1 : 0;
}

// Returns the length, so that only "none" is -1.
extern "C" host::i64 kRExifGetThumbnailData(void* reader, host::u64* words) {
  if (words == nullptr || kRExifIsThumbnailExist(reader) == 0) return -1;
  const auto thumbnail = asReader(reader)->thumbnail;
  words[0] = reinterpret_cast<host::u64>(thumbnail.data());
  words[1] = thumbnail.size();
  return static_cast<host::i64>(thumbnail.size());
}

extern "C" void kRExifEndRead(void* reader) { delete static_cast<kExifLib::Reader*>(reader); }
