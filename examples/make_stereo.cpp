// Writes the example scene as two eyes see it: make_stereo LEFT.jpg RIGHT.jpg

#include <cstdio>

#include "examples/scene_jpeg.h"

namespace examples {
namespace {

constexpr unsigned pictureWidth = 640;
constexpr unsigned pictureHeight = 480;
constexpr double halfStep = 0.015;  // of the distance between the eyes; about 7 pixels

bool writeView(const char* name, double viewpoint) {
  if (writeFile(name, encodeScene(pictureWidth, pictureHeight, true, {}, viewpoint))) return true;
  std::fprintf(stderr, "make_stereo: %s cannot be written\n", name);
  return false;
}

}  // namespace
}  // namespace examples

int main(int count, char** values) {
  if (count != 3) {
    std::fprintf(stderr, "usage: make_stereo LEFT.jpg RIGHT.jpg\n");
    return 2;
  }
  const bool written = examples::writeView(values[1], -examples::halfStep) &&
                       examples::writeView(values[2], examples::halfStep);
  return written ? 0 : 1;
}
