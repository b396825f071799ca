// Writes an example photograph that nobody had to take: make_picture OUT.jpg

#include <cstdio>

#include "examples/scene_jpeg.h"

namespace examples {
namespace {

constexpr unsigned pictureWidth = 640;
constexpr unsigned pictureHeight = 480;
constexpr unsigned thumbnailScale = 4;  // 160 by 120, as EXIF readers expect it

int run(const char* name) {
  const Bytes thumbnail =
      encodeScene(pictureWidth / thumbnailScale, pictureHeight / thumbnailScale, false, {});
  const Bytes picture = encodeScene(pictureWidth, pictureHeight, true,
                                    exifBlock(pictureWidth, pictureHeight, thumbnail));
  if (writeFile(name, picture)) return 0;
  std::fprintf(stderr, "make_picture: %s cannot be written\n", name);
  return 1;
}

}  // namespace
}  // namespace examples

int main(int count, char** values) {
  if (count != 2) {
    std::fprintf(stderr, "usage: make_picture OUT.jpg\n");
    return 2;
  }
  return examples::run(values[1]);
}
