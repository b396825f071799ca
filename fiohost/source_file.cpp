#include "fiohost/source_file.h"

#include <fstream>
#include <utility>

#include "fiohost/failure.h"
#include "platform/console/console.h"

namespace fiohost {
namespace {

std::uint64_t sizeOfReadable(const std::filesystem::path& path) {
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::status(path, error);
  if (!std::filesystem::exists(status)) throw Failure("there is no such file", "check the name");
  if (std::filesystem::is_directory(status)) {
    throw Failure("this is a folder", "name the files in it");
  }
  if (!std::filesystem::is_regular_file(status)) {
    throw Failure("this is not a regular file", "copy its content to a file first");
  }
  if (!std::ifstream(path, std::ios::binary)) {
    throw Failure("the file cannot be opened for reading", "check its permissions");
  }
  return std::filesystem::file_size(path);
}

}  // namespace

SourceFile::SourceFile(const std::string& name) : SourceFile(name, platform::systemPath(name)) {}

SourceFile::SourceFile(std::string name, std::filesystem::path path)
    : name_(std::move(name)),
      path_(std::move(path)),
      wide_(platform::widePath(path_)),
      size_(sizeOfReadable(path_)) {}

}  // namespace fiohost
