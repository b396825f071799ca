#include "tests/fault/scratch.h"

#include <cstdlib>

#include "tests/support/file_bytes.h"
#include "tests/support/memory_folder.h"
#include "tests/support/mpf_builder.h"
#include "tests/support/rich_parts.h"

namespace fault {

Scratch::Scratch() {
  support::keepTemporaryFilesInMemory();
  std::string name = (std::filesystem::temp_directory_path() / "kf-fault-XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) std::abort();
  path_ = name;
}

Scratch::~Scratch() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

void Scratch::write(const std::string& name, const Bytes& content) const {
  support::writeFile(path_ / name, content);
}

Bytes Scratch::read(const std::string& name) const { return support::readFile(path_ / name); }

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

// The second profile makes the pixels lie behind what is read of a file at once.
Bytes picture() {
  constexpr std::size_t profileBytes = 65000;
  return support::withEverySegment(support::JpegBuilder().size(40, 24))
      .icc(1, 1, Bytes(profileBytes, 3))
      .build();
}

Bytes multiPicture(unsigned images) { return support::MpoFileBuilder(images).build(); }

Bytes staleMultiPicture() {
  Bytes file = multiPicture(2);
  const Bytes comment = {0xFF, 0xFE, 0, 6, 'n', 'o', 't', 'e'};
  file.insert(file.begin() + 2, comment.begin(), comment.end());
  return file;
}

}  // namespace fault
