// A copy of a file under a temporary name, for as long as this lives.
#pragma once

#include <filesystem>
#include <string>

namespace fiohost {

class TemporaryCopy {
 public:
  // extension begins with a dot. Throws Failure when there is no room for the copy.
  TemporaryCopy(const std::filesystem::path& source, const std::string& extension);
  TemporaryCopy(const TemporaryCopy&) = delete;
  TemporaryCopy& operator=(const TemporaryCopy&) = delete;
  ~TemporaryCopy();

  [[nodiscard]] const std::filesystem::path& path() const noexcept { return path_; }

 private:
  std::filesystem::path path_;
};

}  // namespace fiohost
