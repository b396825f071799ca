#include "fiohost/row_writer.h"

#include <algorithm>
#include <array>

namespace fiohost {
namespace {

struct Format {
  const char* extension;
  MakeRowWriter* make;
};

constexpr std::array formats = {Format{".png", &makePngWriter}, Format{".bmp", &makeBmpWriter},
                                Format{".ppm", &makePpmWriter}};

char lowered(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

}  // namespace

MakeRowWriter* writerFor(const std::string& fileName) {
  const std::size_t dot = fileName.rfind('.');
  if (dot == std::string::npos) return nullptr;
  std::string extension = fileName.substr(dot);
  std::transform(extension.begin(), extension.end(), extension.begin(), &lowered);
  const auto found = std::find_if(formats.begin(), formats.end(), [&](const Format& format) {
    return extension == format.extension;
  });
  return found != formats.end() ? found->make : nullptr;
}

}  // namespace fiohost
