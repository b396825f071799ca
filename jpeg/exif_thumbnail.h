// The thumbnail that a file carries in its EXIF block, reached through the EXIF reader.
#pragma once

#include "host/klibjpg.h"

namespace jpeg {

// An open EXIF reader. The thumbnail's bytes live as long as this object.
class ExifThumbnail {
 public:
  explicit ExifThumbnail(const char* path) noexcept;
  explicit ExifThumbnail(const wchar_t* path) noexcept;
  ExifThumbnail(const ExifThumbnail&) = delete;
  ExifThumbnail& operator=(const ExifThumbnail&) = delete;
  ~ExifThumbnail();

  [[nodiscard]] bool found() const noexcept { return stream_.data != nullptr; }
  // The thumbnail as JPEG data in memory; empty unless found.
  [[nodiscard]] const host::StreamDescriptor& stream() const noexcept { return stream_; }

 private:
  void findThumbnail() noexcept;

  void* reader_;
  host::StreamDescriptor stream_ = {};
};

}  // namespace jpeg
