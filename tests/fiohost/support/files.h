// Files and folders of a test.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace fiohostTest {

using Bytes = std::vector<std::uint8_t>;

void writeBytes(const std::filesystem::path& path, const Bytes& bytes);
[[nodiscard]] Bytes readBytes(const std::filesystem::path& path);
// Line ends become single line feeds.
[[nodiscard]] std::string readText(const std::filesystem::path& path);

// The names in a folder, in order.
[[nodiscard]] std::vector<std::string> namesIn(const std::filesystem::path& folder);

// A fresh folder that vanishes with everything in it.
class TemporaryFolder {
 public:
  TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder();

  [[nodiscard]] const std::filesystem::path& path() const noexcept { return path_; }

 private:
  std::filesystem::path path_;
};

// Folders inside one another whose path is longer than the 260 characters that older interfaces
// take. They vanish with the files that were named, one by one: what lists a folder takes no longer
// paths either.
class DeepFolders {
 public:
  explicit DeepFolders(const std::filesystem::path& outermost);
  DeepFolders(const DeepFolders&) = delete;
  DeepFolders& operator=(const DeepFolders&) = delete;
  ~DeepFolders();

  // A file of the innermost as seen from the outermost.
  [[nodiscard]] std::string file(const std::string& name);

 private:
  std::string name_;
  std::vector<std::filesystem::path> made_;
  std::vector<std::filesystem::path> files_;
};

}  // namespace fiohostTest
