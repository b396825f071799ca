// The files that the operations work on, in a folder of the program's own.
#pragma once

#include <filesystem>
#include <map>
#include <string>

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
  // The names of everything in the folder with what it holds.
  using Content = std::map<std::string, Bytes>;
  [[nodiscard]] Content content() const;
  // The names that the two have not alike, for messages.
  [[nodiscard]] static std::string difference(const Content& one, const Content& other);
  void clear() const;

 private:
  std::filesystem::path path_;
};

// A small picture with every kind of segment, and a multi-picture file of two.
[[nodiscard]] Bytes picture();
[[nodiscard]] Bytes multiPicture(unsigned images);
// One whose first picture got a comment from an editor that left the index as it was.
[[nodiscard]] Bytes staleMultiPicture();

}  // namespace fault
