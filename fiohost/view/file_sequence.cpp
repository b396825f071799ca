#include "fiohost/view/file_sequence.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <iterator>

#include "fiohost/view/natural_order.h"
#include "platform/console/console.h"

namespace fiohost::view {
namespace {

constexpr std::array extensions = {".jpg", ".jpeg", ".jpe", ".jfif", ".mpo"};

std::string folderOf(const std::string& file) {
  return platform::displayPath(platform::systemPath(file).parent_path());
}

bool isFolder(const std::string& name) {
  std::error_code ignored;
  return std::filesystem::is_directory(platform::systemPath(name), ignored);
}

}  // namespace

bool hasPictureName(const std::string& name) {
  const std::size_t dot = name.rfind('.');
  if (dot == std::string::npos) return false;
  std::string extension = name.substr(dot);
  std::transform(extension.begin(), extension.end(), extension.begin(), [](char c) {
    return static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
  });
  return std::find(extensions.begin(), extensions.end(), extension) != extensions.end();
}

std::vector<std::string> picturesIn(const std::string& folder) {
  std::vector<std::string> found;
  for (const std::filesystem::path& file : platform::filesIn(platform::systemPath(folder))) {
    std::string name = platform::displayPath(file);
    if (hasPictureName(name)) found.push_back(std::move(name));
  }
  std::sort(found.begin(), found.end(), &naturalLess);
  return found;
}

FileSequence::FileSequence(const std::vector<std::string>& named) {
  for (const std::string& name : named) {
    files_.push_back(platform::displayPath(platform::systemPath(name)));
  }
  if (files_.size() != 1) return;
  const std::string one = files_.front();
  if (isFolder(one)) {
    files_ = picturesIn(one);
    return;
  }
  files_ = picturesIn(folderOf(one));
  auto found = std::find(files_.begin(), files_.end(), one);
  if (found == files_.end()) {
    found = files_.insert(std::upper_bound(files_.begin(), files_.end(), one, &naturalLess), one);
  }
  position_ = static_cast<std::size_t>(std::distance(files_.begin(), found));
}

bool FileSequence::step(int by) {
  if (by < 0 && position_ < static_cast<std::size_t>(-by)) return false;
  return goTo(by < 0 ? position_ - static_cast<std::size_t>(-by)
                     : position_ + static_cast<std::size_t>(by));
}

bool FileSequence::toFirst() { return goTo(0); }

bool FileSequence::toLast() { return !files_.empty() && goTo(files_.size() - 1); }

bool FileSequence::goTo(std::size_t position) {
  if (position >= files_.size() || position == position_) return false;
  position_ = position;
  return true;
}

}  // namespace fiohost::view
