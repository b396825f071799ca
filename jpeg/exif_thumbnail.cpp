#include "jpeg/exif_thumbnail.h"

#include <limits>

#include "host/kexiflib.h"

namespace jpeg {

ExifThumbnail::ExifThumbnail(const char* path) noexcept : reader_(kRExifBeginRead(path)) {
  findThumbnail();
}

ExifThumbnail::ExifThumbnail(const wchar_t* path) noexcept : reader_(kRExifBeginReadW(path)) {
  findThumbnail();
}

ExifThumbnail::~ExifThumbnail() {
  if (reader_ != nullptr) kRExifEndRead(reader_);
}

void ExifThumbnail::findThumbnail() noexcept {
  if (reader_ == nullptr) return;
  if (kRExifIsExifExist(reader_) == 0 || kRExifIsThumbnailExist(reader_) == 0) return;
  host::u64 words[2] = {};
  if (kRExifGetThumbnailData(reader_, words) == -1) return;
  if (words[1] > std::numeric_limits<host::u32>::max()) return;
  // The reader gives address and length, the codec takes length and address.
  stream_.length = static_cast<host::u32>(words[1]);
  stream_.data = reinterpret_cast<host::u8*>(words[0]);
}

}  // namespace jpeg
