#include "bench/inputs/inputs.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "bench/inputs/pictures.h"
#include "fiohost/mpo_build.h"

namespace bench {
namespace {

using host::u32;

Folders& folders() {
  static Folders set;
  return set;
}

Path made(const std::string& name, u32 width, u32 height, bool progressive) {
  Path path = inputPath(name);
  ensureJpeg(path, width, height, progressive);
  return path;
}

Paths realPictures() {
  Paths found;
  std::error_code none;
  for (const auto& entry : std::filesystem::directory_iterator(folders().samples, none)) {
    if (entry.path().extension() == ".jpg") found.push_back(entry.path());
  }
  std::sort(found.begin(), found.end());
  return found;
}

}  // namespace

void setFolders(const Folders& given) {
  folders() = given;
  std::filesystem::create_directories(inputPath(""));
}

Path inputPath(const std::string& name) {
  return std::filesystem::absolute(folders().inputs / name);
}

Path outputPath(const std::string& name) {
  return std::filesystem::absolute(folders().outputs / name);
}

Path largeJpeg(bool progressive) {
  return made(progressive ? "progressive.jpg" : "baseline.jpg", largeWidth, largeHeight,
              progressive);
}

Path jpegOfMegapixels(u32 megapixels) {
  const auto width = static_cast<u32>(std::lround(1154.7 * std::sqrt(megapixels)));
  return made(std::to_string(megapixels) + "mp.jpg", width, width * 3 / 4, false);
}

Paths describedFiles() {
  Paths files = realPictures();
  files.push_back(largeJpeg(false));
  return files;
}

Paths manyFiles() {
  constexpr u32 count = 300;
  Paths sources = realPictures();
  if (sources.empty()) sources.push_back(made("small.jpg", 1200, 900, false));
  Paths files;
  for (u32 i = 0; i < count; ++i) {
    files.push_back(inputPath("many-" + std::to_string(i) + ".jpg"));
    std::filesystem::copy_file(sources[i % sources.size()], files.back(),
                               std::filesystem::copy_options::skip_existing);
  }
  return files;
}

Path mpoOf(u32 images) {
  Path path = inputPath(std::to_string(images) + "images.mpo");
  if (std::filesystem::exists(path)) return path;
  const std::string picture = made("mpo-image.jpg", 1024, 768, false).string();
  fiohost::BuildOptions options;
  options.kind = fiohost::BuildKind::multiAngle;
  fiohost::buildMpo(session(), std::vector<std::string>(images, picture), path.string(), options);
  return path;
}

}  // namespace bench
