// Reading and writing beside libjpeg-turbo's own loops; the same natively and under Wine.
#include <stdexcept>

#include "bench/beside/codec_loop.h"
#include "bench/cases/cases.h"
#include "bench/inputs/inputs.h"
#include "bench/inputs/pictures.h"
#include "bench/measure/pairs.h"

namespace bench {
namespace {

using host::u32;

constexpr u32 quality = 85;
constexpr unsigned readSteps = 21;
constexpr unsigned writeSteps = 20;

void readByPlugin(const Path& path, const Target& target, RowSink& sink) {
  read(open(path), target, sink);
}

// One read of each side, byte by byte: what is not equal is not worth timing.
void requireSameRows(const Path& path, const Target& target, int eighths) {
  RowSink ours = {.whole = true};
  RowSink theirs = {.whole = true};
  readByPlugin(path, target, ours);
  decodeByLoop(path, eighths, theirs);
  if (ours.bytes == theirs.bytes && ours.sum == theirs.sum && ours.bytes != 0) return;
  throw std::runtime_error("the plug-in and the loop deliver different rows");
}

std::unique_ptr<Measurement> prepareRead(bool progressive, const Target& target, int eighths) {
  const Path path = largeJpeg(progressive);
  requireSameRows(path, target, eighths);
  const auto ours = [=, sink = RowSink()]() mutable { readByPlugin(path, target, sink); };
  const auto theirs = [=, sink = RowSink()]() mutable { decodeByLoop(path, eighths, sink); };
  return std::make_unique<Pairs>(ours, theirs);
}

constexpr Target eighth = {largeWidth / 8, largeHeight / 8};
// 1,600 pixels wide: the codec's next scale above is 3/8.
constexpr Target wide1600 = {1600, 1600 * largeHeight / largeWidth};

Case previewCase(const char* name, bool progressive, const Target& target, int eighths) {
  return {name, "libjpeg-turbo at the same scale", "ratio", 1.05, Judged::atMost, readSteps, [=] {
            return prepareRead(progressive, target, eighths);
          }};
}

Case shareCase(const char* name, bool progressive) {
  return {name, "the full read of the file", "ratio", 0.25, Judged::atMost, readSteps, [=] {
            const Path path = largeJpeg(progressive);
            const auto small = [=, sink = RowSink()]() mutable {
              readByPlugin(path, eighth, sink);
            };
            const auto full = [=, sink = RowSink()]() mutable { readByPlugin(path, {}, sink); };
            return std::make_unique<Pairs>(small, full);
          }};
}

// The 24 megapixels that are written, made once.
const HostPicture& largePicture() {
  static const HostPicture picture = makePicture(largeWidth, largeHeight);
  return picture;
}

std::unique_ptr<Measurement> prepareWrite(const std::string& name,
                                          const fiohost::FileData::SaveOptions& options) {
  const HostPicture& picture = largePicture();
  const Path ours = outputPath(name + "-ours.jpg");
  const Path theirs = outputPath(name + "-theirs.jpg");
  auto measurement =
      std::make_unique<Pairs>([=, &picture] { write(ours, picture, options); },
                              [=, &picture] { encodeByLoop(theirs, picture, options); });
  // Both wrote in passing. The plug-in's file has metadata of its own in front of the scan only.
  RowSink ourRows = {.whole = true};
  RowSink theirRows = {.whole = true};
  decodeByLoop(ours, 8, ourRows);
  decodeByLoop(theirs, 8, theirRows);
  if (ourRows.sum != theirRows.sum) {
    throw std::runtime_error("the plug-in and the loop write different pictures");
  }
  return measurement;
}

}  // namespace

Cases readCases() {
  const char* beside = "libjpeg-turbo's scanline loop, rows blue first";
  return {{"read baseline", beside, "ratio", 1.03, Judged::atMost, readSteps,
           [] { return prepareRead(false, {}, 8); }},
          {"read progressive", beside, "ratio", 1.03, Judged::atMost, readSteps,
           [] { return prepareRead(true, {}, 8); }}};
}

Cases previewCases() {
  return {previewCase("preview 1/8 baseline", false, eighth, 1),
          previewCase("preview 1/8 progressive", true, eighth, 1),
          previewCase("preview 1600 baseline", false, wide1600, 3),
          previewCase("preview 1600 progressive", true, wide1600, 3),
          shareCase("preview 1/8 share baseline", false),
          shareCase("preview 1/8 share progressive", true)};
}

Cases writeCases() {
  Cases cases;
  for (const u32 mode : {host::modeBaseline, host::modeProgressive}) {
    for (u32 sample = 0; sample < 4; ++sample) {
      const char* const samplings[] = {"444", "422", "420", "411"};
      const std::string name = std::string("write ") + samplings[sample] +
                               (mode == host::modeProgressive ? " progressive" : " baseline");
      cases.push_back({name, "libjpeg-turbo with the same options", "ratio", 1.03, Judged::atMost,
                       writeSteps, [=] {
                         return prepareWrite(name, {quality, mode, sample, 1});
                       }});
    }
  }
  return cases;
}

}  // namespace bench
