// What other programs say about a file. They run where the build found them.
#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "tests/support/jpeg_builder.h"

namespace test {

// The standard output of a shell command.
[[nodiscard]] support::Bytes outputOf(const std::string& command);

// The warnings and errors that exiftool's validation has about each file, all files in one run. A
// file without any has no row.
[[nodiscard]] std::map<std::string, std::set<std::string>> complaintsAbout(
    const std::vector<std::string>& paths);

}  // namespace test
