#include "tests/exif/other_programs.h"

#include <cstdio>
#include <sstream>

namespace test {

support::Bytes outputOf(const std::string& command) {
  support::Bytes output;
  FILE* pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) return output;
  support::Bytes part(65536);
  while (const std::size_t length = std::fread(part.data(), 1, part.size(), pipe)) {
    output.insert(output.end(), part.begin(), part.begin() + static_cast<std::ptrdiff_t>(length));
  }
  pclose(pipe);
  return output;
}

std::map<std::string, std::set<std::string>> complaintsAbout(
    const std::vector<std::string>& paths) {
  std::string command = KF_EXIFTOOL " -validate -warning -error -a -s2";
  for (const std::string& path : paths) command += " '" + path + "'";
  const support::Bytes output = outputOf(command + " 2>/dev/null");
  std::istringstream lines(std::string(output.begin(), output.end()));
  std::map<std::string, std::set<std::string>> complaints;
  std::string path = paths.size() == 1 ? paths[0] : "";
  constexpr std::string_view mark = "======== ";
  for (std::string line; std::getline(lines, line);) {
    if (line.compare(0, mark.size(), mark) == 0) path = line.substr(mark.size());
    const std::size_t colon = line.find(": ");
    const std::string tag = line.substr(0, colon);
    if (tag == "Warning" || tag == "Error") complaints[path].insert(line.substr(colon + 2));
  }
  return complaints;
}

}  // namespace test
