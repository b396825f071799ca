// Running a program to its end with its output caught.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace fiohostTest {

struct ProcessResult {
  int exitCode;  // -1 when the program did not end by itself
  std::string out;
  std::string err;
};

// Runs a program in a folder; arguments are UTF-8 and reach it as they are. The output passes
// through files in captureFolder.
[[nodiscard]] ProcessResult runProcess(const std::filesystem::path& program,
                                       const std::vector<std::string>& arguments,
                                       const std::filesystem::path& folder,
                                       const std::filesystem::path& captureFolder);

}  // namespace fiohostTest
