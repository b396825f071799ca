// Whole files.
#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <vector>

namespace support {

// What the file holds; nothing when it cannot be opened.
inline std::vector<std::uint8_t> readFile(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary | std::ios::ate);
  if (!file) return {};
  std::vector<std::uint8_t> bytes(static_cast<std::size_t>(file.tellg()));
  file.seekg(0);
  file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  return bytes;
}

// A new file with this content, or the file anew.
inline void writeFile(const std::filesystem::path& path, const std::vector<std::uint8_t>& content) {
  std::ofstream file(path, std::ios::binary);
  file.write(reinterpret_cast<const char*>(content.data()),
             static_cast<std::streamsize>(content.size()));
}

}  // namespace support
