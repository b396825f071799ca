// A file that appears complete or not at all: it is written under a temporary name in the target's
// folder and takes the target's name when it is committed.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

#include "platform/console/console.h"

namespace fiohost {

// What becomes of a file that has the target's name already.
enum class Existing { replaced, refused };

class OutputFile {
 public:
  // Throws Failure when the target is no place for a file.
  explicit OutputFile(const std::string& name, Existing existing = Existing::replaced);
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  ~OutputFile();  // what was not committed vanishes

  // Each throws Failure, naming the target, when the system refuses.
  void write(const void* bytes, std::size_t count);
  void restart();  // forgets everything written so far
  // Closes the temporary file and tells its path, for somebody else to write it whole.
  [[nodiscard]] const std::filesystem::path& handOver();
  void commit();

 private:
  void open();
  void close();
  void discard() noexcept;
  [[noreturn]] void fail(int error) const;

  std::string name_;
  std::filesystem::path target_;
  std::filesystem::path temporary_;
  platform::OwnedFile file_;
  bool there_ = false;  // under its temporary name
};

}  // namespace fiohost
