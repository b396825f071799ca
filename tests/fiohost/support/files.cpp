#include "tests/fiohost/support/files.h"

#include <algorithm>
#include <fstream>

#include "platform/console/console.h"
#include "tests/support/file_bytes.h"

namespace fiohostTest {

void writeBytes(const std::filesystem::path& path, const Bytes& bytes) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file.write(reinterpret_cast<const char*>(bytes.data()),
             static_cast<std::streamsize>(bytes.size()));
  file.close();
  if (!file) throw std::runtime_error("the test cannot write " + platform::displayPath(path));
}

Bytes readBytes(const std::filesystem::path& path) { return support::readFile(path); }

std::string readText(const std::filesystem::path& path) {
  const Bytes bytes = readBytes(path);
  std::string text(bytes.begin(), bytes.end());
  text.erase(std::remove(text.begin(), text.end(), '\r'), text.end());
  return text;
}

std::vector<std::string> namesIn(const std::filesystem::path& folder) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    names.push_back(platform::displayPath(entry.path().filename()));
  }
  std::sort(names.begin(), names.end());
  return names;
}

TemporaryFolder::TemporaryFolder() {
  static unsigned count = 0;
  path_ =
      std::filesystem::temp_directory_path() /
      ("fiohost-test-" + std::to_string(platform::processNumber()) + "-" + std::to_string(count++));
  std::filesystem::create_directory(path_);
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

DeepFolders::DeepFolders(const std::filesystem::path& outermost) {
  for (const char letter : {'a', 'b', 'c', 'd'}) {
    name_ += std::string(90, letter) + "/";
    made_.push_back(platform::systemPath(platform::displayPath(outermost) + "/" + name_));
    std::filesystem::create_directory(made_.back());
  }
}

std::string DeepFolders::file(const std::string& name) {
  files_.push_back(made_.back() / name);
  return name_ + name;
}

DeepFolders::~DeepFolders() {
  std::error_code ignored;
  for (const std::filesystem::path& file : files_) std::filesystem::remove(file, ignored);
  for (auto level = made_.rbegin(); level != made_.rend(); ++level) {
    std::filesystem::remove(*level, ignored);
  }
}

}  // namespace fiohostTest
