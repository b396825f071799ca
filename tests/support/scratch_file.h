// A file of a test in the temporary folder, gone with this object. Its name is no other process's:
// the tests of one program run side by side.
#pragma once

#include <cstdio>
#include <filesystem>
#include <string>

#include "platform/open_file.h"
#include "tests/support/file_bytes.h"
#include "tests/support/jpeg_builder.h"

namespace test {

class ScratchFile {
 public:
  // Names a file that does not exist yet.
  ScratchFile() {
    static unsigned count = 0;
    const std::string name = "kf-test-" + std::to_string(GetTickCount64()) + "-" +
                             std::to_string(GetCurrentThreadId()) + "-" + std::to_string(count++);
    path_ = (std::filesystem::temp_directory_path() / name).string();
  }
  explicit ScratchFile(const support::Bytes& content) : ScratchFile() { write(content); }
  ScratchFile(const ScratchFile&) = delete;
  ScratchFile& operator=(const ScratchFile&) = delete;
  ~ScratchFile() { std::remove(path_.c_str()); }

  const std::string& path() const { return path_; }
  std::wstring widePath() const { return std::filesystem::path(path_).wstring(); }
  bool exists() const { return std::filesystem::exists(path_); }

  void write(const support::Bytes& content) const { support::writeFile(path_, content); }
  support::Bytes read() const { return support::readFile(path_); }
  platform::OpenFile open() const { return platform::openForReading(path_.c_str()); }
  platform::OpenFile openForWriting() const {
    return platform::OpenFile(CreateFileA(path_.c_str(), GENERIC_READ | GENERIC_WRITE,
                                          FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                          FILE_ATTRIBUTE_NORMAL, nullptr));
  }

 private:
  std::string path_;
};

}  // namespace test
