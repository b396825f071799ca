// A file that the user named, in the forms that the plug-in and the user need.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

namespace fiohost {

class SourceFile {
 public:
  // Throws Failure when the name is no readable file.
  explicit SourceFile(const std::string& name);
  // A file at path that stands for the one that the user named. Throws as above.
  SourceFile(std::string name, std::filesystem::path path);

  [[nodiscard]] const std::string& name() const noexcept { return name_; }  // as given
  [[nodiscard]] const std::filesystem::path& path() const noexcept { return path_; }
  [[nodiscard]] const std::wstring& wide() const noexcept { return wide_; }
  [[nodiscard]] std::uint64_t size() const noexcept { return size_; }  // bytes

 private:
  std::string name_;
  std::filesystem::path path_;
  std::wstring wide_;
  std::uint64_t size_;
};

}  // namespace fiohost
