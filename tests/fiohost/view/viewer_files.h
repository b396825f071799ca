// The built plug-in in the test's own process, and pictures whose places can be told apart.
#pragma once

#include "examples/scene_jpeg.h"
#include "fiohost/session.h"
#include "tests/fiohost/support/program_fixture.h"
#include "tests/support/tiff_builder.h"

namespace fiohostTest {

// The resources come first, as the plug-in looks for them by name alone.
struct BuiltPlugin {
  fiohost::Module resources{distributionFolder() / "KFRES.DLL"};
  fiohost::Session session{distributionFolder() / "fio"};
};

// An EXIF payload that says how the picture is to be turned.
inline Bytes exifWithOrientation(std::uint16_t orientation) {
  support::TiffBuilder tiff;
  tiff.ifd0().shorts(support::tag::orientation, {orientation});
  Bytes payload = {'E', 'x', 'i', 'f', 0, 0};
  const Bytes built = tiff.build();
  payload.insert(payload.end(), built.begin(), built.end());
  return payload;
}

class ViewerTest : public ProgramTest {
 protected:
  [[nodiscard]] std::string nameOf(const std::string& name) const {
    return platform::displayPath(file(name));
  }
  // name.mpo of the pictures, which must lie in the folder.
  void buildMpo(const std::string& name, const std::string& kind,
                const std::vector<std::string>& pictures) const {
    std::vector<std::string> arguments = {"mpo", "build", "-o", name, "--kind", kind};
    arguments.insert(arguments.end(), pictures.begin(), pictures.end());
    const ProcessResult result = run(arguments);
    ASSERT_EQ(result.exitCode, 0) << result.err;
  }
  // pair.mpo: a scene as two eyes see it.
  void addStereo(unsigned width = 320, unsigned height = 200) const {
    constexpr double halfStep = 0.02;
    writeBytes(file("left.jpg"), examples::encodeScene(width, height, true, {}, -halfStep));
    writeBytes(file("right.jpg"), examples::encodeScene(width, height, true, {}, halfStep));
    buildMpo("pair.mpo", "stereo", {"left.jpg", "right.jpg"});
    ASSERT_EQ(run({"mpo", "extract", "pair.mpo", "-o", "images"}).exitCode, 0);
  }
  // An image of that file, from 1, as the program extracts it.
  [[nodiscard]] Pixels imageOfPair(int number) const {
    return png("images/pair-" + std::to_string(number) + ".png");
  }
};

}  // namespace fiohostTest
