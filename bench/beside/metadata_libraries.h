// The metadata libraries that a program would use instead of the plug-in.
#pragma once

#include <filesystem>
#include <memory>

namespace bench {

// libexif: from the file, every value of every directory and of the maker note. Returns the texts'
// length.
std::size_t readByLibexif(const std::filesystem::path& path);

// libexiv2: open, readMetadata, every key and value. Returns the texts' length; a file that it
// refuses gives 0.
std::size_t readByExiv2(const std::filesystem::path& path);

// What libexiv2 has read of a file, for printing.
class Exiv2Metadata {
 public:
  explicit Exiv2Metadata(const std::filesystem::path& path);
  Exiv2Metadata(Exiv2Metadata&& other) noexcept;
  Exiv2Metadata(const Exiv2Metadata&) = delete;
  Exiv2Metadata& operator=(const Exiv2Metadata&) = delete;
  Exiv2Metadata& operator=(Exiv2Metadata&&) = delete;
  ~Exiv2Metadata();

  // The interpreted print of every EXIF and IPTC datum; returns the texts' length.
  [[nodiscard]] std::size_t print() const;

 private:
  struct Image;
  std::unique_ptr<Image> image_;
};

}  // namespace bench
