// Relative names while several threads change the current directory, which belongs to the process.
#pragma once

#include <filesystem>

namespace platform {

// As long as one lives, systemPath() resolves names against the directory that was current when it
// was made; at its end that directory is current again. It also makes absolute what the environment
// says about the settings file and temporary files, for good. Made and destroyed while no other
// thread runs; there is one at a time.
class StartFolder {
 public:
  // Throws std::filesystem::filesystem_error when the current directory has no name.
  StartFolder();
  StartFolder(const StartFolder&) = delete;
  StartFolder& operator=(const StartFolder&) = delete;
  ~StartFolder();

 private:
  std::filesystem::path path_;
};

// The path that a name stands for, not yet absolute when there is no StartFolder.
[[nodiscard]] std::filesystem::path fromStartFolder(const std::filesystem::path& name);

}  // namespace platform
