// A fuzz target without the fuzzer: runs it over the files of the folders that are named, for
// builds that count the lines which run.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <vector>

#include "tests/support/file_bytes.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int count, char** folders) {
  std::size_t inputs = 0;
  for (int i = 1; i < count; ++i) {
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folders[i])) {
      if (!entry.is_regular_file()) continue;
      const std::vector<std::uint8_t> bytes = support::readFile(entry.path());
      LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
      ++inputs;
    }
  }
  std::printf("%zu inputs\n", inputs);
  return inputs != 0 ? 0 : 1;
}
