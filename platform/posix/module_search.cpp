#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "platform/posix/module_table.h"
#include "platform/posix/objects.h"
#include "platform/posix/paths.h"

namespace platform::posix {
namespace {

std::string fileIn(std::string_view folder, const std::string& name) {
  std::string path(folder.empty() ? std::string_view(".") : folder);
  if (path.back() != '/') path.push_back('/');
  path += name;
  struct stat status;
  return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) ? path : std::string();
}

std::string searchPathFolders(const std::string& name) {
  const char* variable = std::getenv("PATH");
  std::string_view folders = variable != nullptr ? variable : "";
  while (!folders.empty()) {
    const std::size_t end = folders.find(':');
    std::string found = fileIn(folders.substr(0, end), name);
    if (!found.empty()) return found;
    folders.remove_prefix(end == std::string_view::npos ? folders.size() : end + 1);
  }
  return {};
}

}  // namespace

std::string executablePath() {
  char path[PATH_MAX];
  const ssize_t length = readlink("/proc/self/exe", path, sizeof(path));
  return length > 0 ? std::string(path, static_cast<std::size_t>(length)) : std::string();
}

std::string searchModule(const std::string& name) {
  const std::string executable = executablePath();
  std::string found = fileIn(executable.substr(0, executable.find_last_of('/') + 1), name);
  if (found.empty()) found = fileIn(".", name);
  if (found.empty()) found = searchPathFolders(name);
  return found;
}

std::string withModuleExtension(std::string name) {
  const std::size_t dot = baseName(name).find('.');
  if (dot == std::string_view::npos) return name + ".dll";
  if (name.back() == '.') name.pop_back();
  return name;
}

bool isModuleFile(const std::string& path) {
  constexpr char signature[] = {0x7F, 'E', 'L', 'F'};
  char found[sizeof(signature)] = {};
  const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
  return file && read(file.get(), found, sizeof(found)) == sizeof(found) &&
         std::memcmp(found, signature, sizeof(signature)) == 0;
}

}  // namespace platform::posix
