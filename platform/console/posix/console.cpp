#include "platform/console/console.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

#include "platform/console/start_folder.h"
#include "platform/posix/unicode.h"

namespace platform {

std::vector<std::string> utf8Arguments(int count, char** values) {
  return count > 1 ? std::vector<std::string>(values + 1, values + count)
                   : std::vector<std::string>();
}

void showUtf8() {}

bool isTerminal(std::FILE* stream) { return isatty(fileno(stream)) == 1; }

std::filesystem::path systemPath(const std::string& text) {
  return std::filesystem::absolute(fromStartFolder(text));
}

std::vector<std::filesystem::path> filesIn(const std::filesystem::path& folder) {
  std::vector<std::filesystem::path> files;
  std::error_code error;
  std::filesystem::directory_iterator entry(folder, error);
  for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
    std::error_code ignored;
    if (entry->is_regular_file(ignored)) files.push_back(entry->path());
  }
  return files;
}

std::string displayPath(const std::filesystem::path& path) { return path.string(); }

std::optional<std::string> ansiPath(const std::filesystem::path& path) { return path.string(); }

std::wstring widePath(const std::filesystem::path& path) {
  return posix::wideFromUtf8(path.native(), posix::Malformed::escape).value();
}

std::filesystem::path programFile() { return std::filesystem::read_symlink("/proc/self/exe"); }

OwnedFile createNewFile(const std::filesystem::path& path) {
  const int descriptor = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  if (descriptor < 0) return nullptr;
  OwnedFile file(fdopen(descriptor, "wb"));
  if (file == nullptr) {
    const int error = errno;
    close(descriptor);
    unlink(path.c_str());
    errno = error;
  }
  return file;
}

HMODULE loadModule(const std::filesystem::path& path) { return LoadLibraryA(path.c_str()); }

bool hasConsoleToItself() { return false; }

void leaveOwnConsole() {}

unsigned long processNumber() { return static_cast<unsigned long>(getpid()); }

}  // namespace platform
