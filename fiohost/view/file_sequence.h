// The files that one steps through: those that were named, or the pictures of a folder.
#pragma once

#include <string>
#include <vector>

namespace fiohost::view {

// Whether a name's extension, in any case, is one of pictures that the plug-in opens.
[[nodiscard]] bool hasPictureName(const std::string& name);

// The picture files of a folder in natural order of their names; none of a folder that cannot be
// read. Names are UTF-8 with the folder in front.
[[nodiscard]] std::vector<std::string> picturesIn(const std::string& folder);

class FileSequence {
 public:
  FileSequence() = default;
  // One file stands among the pictures of its folder, whatever its own name; a folder begins with
  // its first picture; several files stand for themselves.
  explicit FileSequence(const std::vector<std::string>& named);

  [[nodiscard]] bool empty() const noexcept { return files_.empty(); }
  [[nodiscard]] std::size_t count() const noexcept { return files_.size(); }
  // The current file's number, from 0. Not of an empty sequence.
  [[nodiscard]] std::size_t position() const noexcept { return position_; }
  [[nodiscard]] const std::string& current() const { return files_.at(position_); }

  // Each is false, and nothing changes, when there is no such file.
  bool step(int by);
  bool toFirst();
  bool toLast();

 private:
  bool goTo(std::size_t position);

  std::vector<std::string> files_;
  std::size_t position_ = 0;
};

}  // namespace fiohost::view
