// Multi-picture files beside Pillow, which is timed inside its own process.
#include "bench/beside/program.h"
#include "bench/cases/cases.h"
#include "bench/inputs/inputs.h"
#include "bench/measure/pairs.h"
#include "bench/measure/statistics.h"
#include "bench/plugin_host.h"
#include "fiohost/mpo_extract.h"

namespace bench {
namespace {

using host::u32;

constexpr unsigned steps = 31;
constexpr unsigned repetitions = 5;

void describeAndExtract(const Path& path, const Path& folder) {
  const fiohost::SourceFile file(path.string());
  const fiohost::MpoFile mpo = fiohost::describeMpo(session(), file);
  for (const fiohost::ListedImage& image : mpo.images) {
    const Path output = folder / (std::to_string(image.number) + ".jpg");
    fiohost::extractStream(file, image, output.string(), fiohost::Existing::replaced);
  }
}

// Pairs of which the second half lies in another process, which tells its own time.
class BesidePillow final : public Measurement {
 public:
  explicit BesidePillow(u32 images)
      : path_(mpoOf(images)),
        folder_(outputPath(std::to_string(images) + "-streams")),
        pillow_({"/usr/bin/python3", std::string(KF_BENCH_SOURCE) + "/beside/pillow_frames.py",
                 path_.string(), std::to_string(images), std::to_string(repetitions)}) {
    std::filesystem::create_directories(folder_);
    describeAndExtract(path_, folder_);
  }

  double step() override {
    const double ours =
        secondsOf([&] { describeAndExtract(path_, folder_); }, repetitions) / repetitions;
    const double beside = pillow_.work();
    ours_.push_back(ours);
    beside_.push_back(beside);
    ratios_.push_back(ours / beside);
    return ours;
  }
  [[nodiscard]] Figure figure() const override {
    return {medianOf(ratios_), medianOf(ours_), medianOf(beside_)};
  }

 private:
  Path path_;
  Path folder_;
  Worker pillow_;
  std::vector<double> ratios_;
  std::vector<double> ours_;
  std::vector<double> beside_;
};

Case mpoCase(u32 images) {
  return {"mpo " + std::to_string(images) + " images",
          "Pillow: open and seek all frames",
          "ratio",
          0.5,
          Judged::atMost,
          steps,
          [=] { return std::make_unique<BesidePillow>(images); }};
}

}  // namespace

Cases mpoCases() { return {mpoCase(2), mpoCase(127)}; }

}  // namespace bench
