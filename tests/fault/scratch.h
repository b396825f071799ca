// The files that the operations work on, in a folder of the program's own.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/jpeg_builder.h"

namespace fault {

using support::Bytes;

class Scratch {
 public:
  Scratch();
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;
  ~Scratch();

  [[nodiscard]] std::string file(const std::string& name) const { return (path_ / name).string(); }
  void write(const std::string& name, const Bytes& content) const;
  [[nodiscard]] Bytes read(const std::string& name) const;
  // The names of everything in the folder, sorted.
  [[nodiscard]] std::vector<std::string> names() const;

 private:
  std::filesystem::path path_;
};

// A small picture with every kind of segment, and a multi-picture file of two.
[[nodiscard]] Bytes picture();
[[nodiscard]] Bytes multiPicture();

}  // namespace fault
