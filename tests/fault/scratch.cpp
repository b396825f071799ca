#include "tests/fault/scratch.h"

#include <cstdlib>
#include <fstream>
#include <iterator>

#include "tests/heap/heap_model.h"
#include "tests/support/mpf_builder.h"

namespace fault {
namespace {

using support::bytesOf;

Bytes exif() {
  support::TiffBuilder tiff;
  tiff.ifd0().text(0x010F, "Maker").shorts(0x0112, {1});
  tiff.exif().rationals(0x829A, {{1, 250}}).shorts(0x8827, {100});
  tiff.gps().bytes(0, {2, 3, 0, 0});
  return tiff.thumbnail(support::JpegBuilder().size(16, 8).build()).build();
}

Bytes heap() {
  return test::ModelHeap{false,
                         {{0x0816, test::texts({"IMG_001.JPG"})},
                          {0x2807, {}, {{0x080A, test::texts({"Maker", "Model"})}}}}}
      .build();
}

Bytes resources() {
  const Bytes datasets = {0x1C, 2, 5, 0, 5, 't', 'i', 't', 'l', 'e'};
  const Bytes head = {'8', 'B', 'I', 'M', 4, 4, 0, 0, 0, 0, 0, 10};
  return support::joined(head, datasets);
}

}  // namespace

Scratch::Scratch() {
  std::string name = (std::filesystem::temp_directory_path() / "kf-fault-XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) std::abort();
  path_ = name;
}

Scratch::~Scratch() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

void Scratch::write(const std::string& name, const Bytes& content) const {
  std::ofstream stream(path_ / name, std::ios::binary);
  stream.write(reinterpret_cast<const char*>(content.data()),
               static_cast<std::streamsize>(content.size()));
}

Bytes Scratch::read(const std::string& name) const {
  std::ifstream stream(path_ / name, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

Scratch::Content Scratch::content() const {
  Content found;
  for (const auto& entry : std::filesystem::directory_iterator(path_)) {
    const std::string name = entry.path().filename().string();
    found.emplace(name, read(name));
  }
  return found;
}

std::string Scratch::difference(const Content& one, const Content& other) {
  std::string names;
  for (const auto& [name, bytes] : one) {
    const auto twin = other.find(name);
    if (twin == other.end() || twin->second != bytes) names += name + " ";
  }
  for (const auto& [name, bytes] : other) {
    if (!one.contains(name)) names += name + " ";
  }
  return names;
}

void Scratch::clear() const {
  for (const auto& entry : std::filesystem::directory_iterator(path_)) {
    std::filesystem::remove_all(entry.path());
  }
}

// The profile makes the pixels lie behind what is read of a file at once.
Bytes picture() {
  constexpr std::size_t profileBytes = 65000;
  return support::JpegBuilder()
      .size(40, 24)
      .cameraHeap(heap())
      .exif(exif())
      .xmp(bytesOf("<x:xmpmeta/>"))
      .icc(1, 1, Bytes(profileBytes, 3))
      .photoshop(resources())
      .build();
}

Bytes multiPicture() { return support::MpoFileBuilder(2).build(); }

}  // namespace fault
