#include "bench/beside/metadata_libraries.h"

#include <libexif/exif-data.h>
#include <libexif/exif-mnote-data.h>

#include <exiv2/exiv2.hpp>

namespace bench {
namespace {

constexpr unsigned valueRoom = 1024;

struct Reading {
  char value[valueRoom];
  std::size_t length = 0;
};

void readEntry(ExifEntry* entry, void* state) {
  auto& reading = *static_cast<Reading*>(state);
  const char* text = exif_entry_get_value(entry, reading.value, sizeof reading.value);
  if (text != nullptr) reading.length += std::char_traits<char>::length(text);
}

void readContent(ExifContent* content, void* state) {
  exif_content_foreach_entry(content, &readEntry, state);
}

void readMakerNote(ExifData* data, Reading& reading) {
  ExifMnoteData* note = exif_data_get_mnote_data(data);
  if (note == nullptr) return;
  exif_mnote_data_ref(note);
  for (unsigned i = 0; i < exif_mnote_data_count(note); ++i) {
    const char* text = exif_mnote_data_get_value(note, i, reading.value, sizeof reading.value);
    if (text != nullptr) reading.length += std::char_traits<char>::length(text);
  }
  exif_mnote_data_unref(note);
}

template <typename Data>
std::size_t lengthOfAll(const Data& data) {
  std::size_t length = 0;
  for (const auto& datum : data) length += datum.key().size() + datum.toString().size();
  return length;
}

// Its messages about odd files would be all that one sees.
void silenceExiv2() { Exiv2::LogMsg::setLevel(Exiv2::LogMsg::mute); }

}  // namespace

std::size_t readByLibexif(const std::filesystem::path& path) {
  ExifData* data = exif_data_new_from_file(path.c_str());
  if (data == nullptr) return 0;
  Reading reading;
  exif_data_foreach_content(data, &readContent, &reading);
  readMakerNote(data, reading);
  exif_data_unref(data);
  return reading.length;
}

std::size_t readByExiv2(const std::filesystem::path& path) {
  silenceExiv2();
  try {
    const auto image = Exiv2::ImageFactory::open(path.string());
    image->readMetadata();
    return lengthOfAll(image->exifData()) + lengthOfAll(image->iptcData()) +
           lengthOfAll(image->xmpData());
  } catch (const Exiv2::Error&) {
    return 0;
  }
}

struct Exiv2Metadata::Image {
  Exiv2::ExifData exif;
  Exiv2::IptcData iptc;
};

Exiv2Metadata::Exiv2Metadata(const std::filesystem::path& path)
    : image_(std::make_unique<Image>()) {
  silenceExiv2();
  try {
    const auto image = Exiv2::ImageFactory::open(path.string());
    image->readMetadata();
    image_->exif = image->exifData();
    image_->iptc = image->iptcData();
  } catch (const Exiv2::Error&) {
    image_->exif.clear();  // a file that it refuses has nothing to print
  }
}

Exiv2Metadata::Exiv2Metadata(Exiv2Metadata&&) noexcept = default;
Exiv2Metadata::~Exiv2Metadata() = default;

std::size_t Exiv2Metadata::print() const {
  std::size_t length = 0;
  for (const Exiv2::Exifdatum& datum : image_->exif) length += datum.print(&image_->exif).size();
  for (const Exiv2::Iptcdatum& datum : image_->iptc) length += datum.print().size();
  return length;
}

}  // namespace bench
