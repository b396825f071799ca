// Cost must grow as the work does, and memory with neither the rows nor their number.
#include <stdexcept>

#include "bench/cases/cases.h"
#include "bench/inputs/grown_files.h"
#include "bench/inputs/inputs.h"
#include "bench/inputs/pictures.h"
#include "bench/measure/growth.h"
#include "fiohost/mpo_extract.h"
#include "fiohost/properties.h"

namespace bench {
namespace {

using host::u32;

constexpr double steepest = 1.1;
constexpr double mostMemory = 16;  // MiB, beyond the codec's own tables
constexpr double mebibyte = 1024 * 1024;
constexpr u32 distinctRows = 64;  // the picture that is written takes no memory worth speaking of
constexpr fiohost::FileData::SaveOptions writeOptions = {85, host::modeBaseline, host::sample420,
                                                         1};

GrowthStep readStep(u32 megapixels) {
  const Path path = jpegOfMegapixels(megapixels);
  return {static_cast<double>(megapixels), [=] {
            RowSink sink;
            read(open(path), {}, sink);
          }};
}

GrowthStep writeStep(u32 megapixels) {
  const u32 width = open(jpegOfMegapixels(megapixels)).common().width;
  const auto picture =
      std::make_shared<HostPicture>(makePicture(width, width * 3 / 4, distinctRows));
  const Path path = outputPath("growth.jpg");
  return {static_cast<double>(megapixels), [=] { write(path, *picture, writeOptions); }};
}

// What is not taken in would cost nothing.
void requireFields(const Path& path, u32 count) {
  const fiohost::FileData fileData = open(path);
  readFields(fileData);
  if (fiohost::LockedFields(fileData).fields().size() >= count) return;
  throw std::runtime_error(path.string() + ": not every entry became a field");
}

GrowthStep entriesStep(u32 count) {
  const Path path = inputPath("entries-" + std::to_string(count) + ".jpg");
  writeEntries(path, count);
  requireFields(path, count);
  return {static_cast<double>(count), [=] { readFields(open(path)); }};
}

GrowthStep imagesStep(u32 count) {
  const Path path = inputPath("images-" + std::to_string(count) + ".mpo");
  writeImages(path, count);
  return {static_cast<double>(count), [=] {
            const fiohost::SourceFile file(path.string());
            const fiohost::MpoFile mpo = fiohost::describeMpo(session(), file);
            for (const fiohost::ListedImage& image : mpo.images) {
              fiohost::extractStream(file, image, outputPath("growth-stream.jpg").string(),
                                     fiohost::Existing::replaced);
            }
          }};
}

// Reads a file of so many segments, and writes it with all of them.
GrowthStep segmentsStep(u32 count) {
  const Path path = inputPath("segments-" + std::to_string(count) + ".jpg");
  writeSegments(path, count);
  requireFields(path, count);
  return {static_cast<double>(count), [=] {
            RowSink sink;
            fiohost::FileData fileData = open(path);
            read(fileData, {}, sink);
            rewrite(outputPath("growth-segments.jpg"), fileData);
          }};
}

using MakeStep = GrowthStep(u32 amount);

struct Series {
  const char* name;
  const char* against;
  MakeStep* make;
  std::vector<u32> amounts;
  bool limitsMemory;  // of the largest amount
};

const std::vector<Series>& allSeries() {
  static const std::vector<Series> all = {
      {"read", "1, 10, 100 megapixels", &readStep, {1, 10, 100}, true},
      {"write", "1, 10, 100 megapixels", &writeStep, {1, 10, 100}, true},
      {"entries", "10 to 60,000 EXIF entries", &entriesStep, {10, 100, 1000, 10000, 60000}, false},
      {"images", "1 to 127 images", &imagesStep, {1, 8, 32, 127}, false},
      {"segments", "1 to 2,000 segments", &segmentsStep, {1, 10, 100, 1000, 2000}, false},
  };
  return all;
}

// One series, measured when the first of its cases needs it.
Growth& growthOf(std::size_t index) {
  static std::vector<std::unique_ptr<Growth>> made(allSeries().size());
  if (made[index] == nullptr) {
    std::vector<GrowthStep> steps;
    for (const u32 amount : allSeries()[index].amounts) {
      steps.push_back(allSeries()[index].make(amount));
    }
    made[index] = std::make_unique<Growth>(std::move(steps));
  }
  return *made[index];
}

class GrowthFigure final : public Measurement {
 public:
  using Reader = double(const Growth& growth);

  GrowthFigure(std::size_t series, Reader* reader) : growth_(growthOf(series)), reader_(reader) {}

  double step() override {
    growth_.measure();
    return growth_.largestTime();
  }
  [[nodiscard]] Figure figure() const override {
    return {reader_(growth_), growth_.largestTime(), 0};
  }

 private:
  Growth& growth_;
  Reader* reader_;
};

Case growthCase(std::size_t index, const char* what, const char* unit, double limit,
                GrowthFigure::Reader* reader) {
  const Series& series = allSeries()[index];
  return {std::string("growth ") + series.name + " " + what,
          std::string("against ") + series.against,
          unit,
          limit,
          Judged::atMost,
          1,
          [=] { return std::make_unique<GrowthFigure>(index, reader); }};
}

}  // namespace

Cases growthCases() {
  Cases cases;
  for (std::size_t i = 0; i < allSeries().size(); ++i) {
    cases.push_back(growthCase(i, "time", "exponent", steepest,
                               [](const Growth& growth) { return growth.timeExponent(); }));
    cases.push_back(growthCase(i, "memory", "exponent", steepest,
                               [](const Growth& growth) { return growth.memoryExponent(); }));
    if (!allSeries()[i].limitsMemory) continue;
    cases.push_back(growthCase(i, "peak", "MiB", mostMemory, [](const Growth& growth) {
      return growth.largestPeak() / mebibyte;
    }));
  }
  return cases;
}

}  // namespace bench
