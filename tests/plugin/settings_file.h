// A settings file of a test's own, which the plug-in is told to use.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <string>

#include "tests/plugin/doubles/doubles.h"

namespace test {

class SettingsFile {
 public:
  SettingsFile() {
    const std::string name = "kfio_test_" + std::to_string(std::random_device()()) + ".ini";
    path_ = (std::filesystem::temp_directory_path() / name).string();
    doubles::state().iniPath = path_;
  }
  SettingsFile(const SettingsFile&) = delete;
  SettingsFile& operator=(const SettingsFile&) = delete;
  ~SettingsFile() {
    std::error_code ignored;
    std::filesystem::remove(path_, ignored);
  }

  void write(const std::string& text) const {
    std::ofstream file(path_, std::ios::binary);
    file << text;
    ASSERT_TRUE(file.flush());
  }
  // Every line, without line ends and empty lines; nothing when there is no file.
  [[nodiscard]] std::vector<std::string> lines() const {
    std::vector<std::string> found;
    std::ifstream file(path_);
    for (std::string line; std::getline(file, line);) {
      while (!line.empty() && line.back() == '\r') line.pop_back();
      if (!line.empty()) found.push_back(line);
    }
    return found;
  }

 private:
  std::string path_;
};

}  // namespace test
