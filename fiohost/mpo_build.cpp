#include "fiohost/mpo_build.h"

#include <algorithm>

#include "fiohost/describe.h"
#include "fiohost/explain.h"
#include "fiohost/interrupt.h"
#include "fiohost/output_file.h"
#include "fiohost/progress.h"
#include "fiohost/row_reader.h"
#include "fiohost/save_settings.h"

namespace fiohost {
namespace {

using host::MpoImageDesc;
using host::MpoRational;
using host::u32;
using host::u8;

// Type classes and sub-codes (CIPA DC-007, 5.2.3.3.1).
constexpr u8 classLargeThumbnail = 1;
constexpr u8 classMultiFrame = 2;
constexpr u8 classPrimary = 3;
constexpr u8 subCodeVga = 1;
constexpr u8 subCodeFullHd = 2;
constexpr u8 subCodePanorama = 1;
constexpr u8 subCodeStereo = 2;
constexpr u8 subCodeMultiAngle = 3;
constexpr MpoRational unknownRatio = {0xFFFFFFFF, 0xFFFFFFFF};

struct Picture {
  SourceFile file;
  Described described;
};

bool hasViewpoints(BuildKind kind) {
  return kind == BuildKind::stereo || kind == BuildKind::multiAngle;
}

u8 subCodeOf(BuildKind kind) {
  if (kind == BuildKind::panorama) return subCodePanorama;
  return kind == BuildKind::stereo ? subCodeStereo : subCodeMultiAngle;
}

// Viewpoints stand in a row at equal distances from the first, the base.
MpoRational times(const std::optional<MpoRational>& step, u32 count) {
  if (!step) return unknownRatio;
  return {step->numerator * count, step->denominator};
}

void describeViewpoint(MpoImageDesc& image, u32 number, const BuildOptions& options) {
  image.flags =
      host::presenceBaseViewpoint | host::presenceConvergenceAngle | host::presenceBaselineLength;
  image.attributes.baseViewpoint = 1;
  image.attributes.convergenceAngle = times(options.convergence, number - 1);
  image.attributes.baselineLength = times(options.baseline, number - 1);
}

bool fitsVga(const host::FileDataRecord& record) {
  return std::max(record.width, record.height) <= 640 &&
         std::min(record.width, record.height) <= 480;
}

// One file's pictures with everything that the writer asks about them.
class Build {
 public:
  Build(const BuildOptions& options, std::vector<Picture>& pictures)
      : options_(options), pictures_(pictures) {}

  [[nodiscard]] u32 imageCount() const { return static_cast<u32>(pictures_.size()); }

  // number counts from 1.
  void describe(MpoImageDesc& image, u32 number) const {
    image.representative = number == 1 ? 1 : 0;
    if (options_.kind == BuildKind::largeThumbnail) {
      describeDependence(image, number);
      return;
    }
    image.typeClass = classMultiFrame;
    image.typeSubCode = subCodeOf(options_.kind);
    if (hasViewpoints(options_.kind)) describeViewpoint(image, number, options_);
  }

 private:
  void describeDependence(MpoImageDesc& image, u32 number) const {
    if (number == 1) {
      image.dependentParent = 1;
      image.typeClass = classPrimary;
      image.dependent1 = 2;
      image.dependent2 = imageCount() > 2 ? 3 : 0;
      return;
    }
    const Picture& picture = pictures_[number - 1];
    image.dependentChild = 1;
    image.typeClass = classLargeThumbnail;
    image.typeSubCode = fitsVga(picture.described.fileData.common()) ? subCodeVga : subCodeFullHd;
  }

  const BuildOptions& options_;
  std::vector<Picture>& pictures_;
};

// The answering end of one image's writing.
class ImageSupply {
 public:
  ImageSupply(const Build& build, u32 position, RowPipe& pipe, Progress& progress)
      : build_(build), position_(position), pipe_(pipe), progress_(progress) {}

  static int onRequest(int action, void* record, void* context, HGLOBAL) noexcept {
    auto& self = *static_cast<ImageSupply*>(context);
    if (interrupted()) return -1;
    if (action == host::requestQuestion) {
      return self.answer(*static_cast<host::ImageRequest*>(record));
    }
    if (action != host::requestRowSource) return 0;
    return self.supply(*static_cast<host::RowRequest*>(record));
  }

 private:
  int answer(const host::ImageRequest& request) noexcept {
    if (request.answer == 0) return 0;
    if (request.question == host::questionCount) {
      *reinterpret_cast<host::MpoCountAnswer*>(request.answer) = {build_.imageCount(), position_};
      return 1;
    }
    const u32 number = request.imageNumber;
    if (request.question != host::questionImageDesc || number < 1 || number > build_.imageCount()) {
      return 0;
    }
    build_.describe(*reinterpret_cast<MpoImageDesc*>(request.answer), number);
    return 1;
  }

  // The writer asks for one row after another.
  int supply(host::RowRequest& request) noexcept {
    progress_.update(request.firstRow, request.height);
    request.rows = reinterpret_cast<host::u64>(pipe_.take());
    return request.rows != 0 ? 1 : 0;
  }

  const Build& build_;
  u32 position_;
  RowPipe& pipe_;
  Progress& progress_;
};

void writeImage(const Session& session, const Build& build, u32 position, Picture& picture,
                bool severalPasses) {
  Progress progress(picture.file.name());
  RowPipe pipe(severalPasses);
  RowReader reader(session, picture.file, pipe);
  ImageSupply supply(build, position, pipe, progress);
  session.reports.clear();
  const int result = session.plugin.writeImage(picture.described.fileData.handle(),
                                               &ImageSupply::onRequest, &supply);
  const int code = session.reports.code();
  reader.stop();
  if (result == 1) return;
  if (interrupted()) throw Failure("stopped", "");
  reader.rethrow();
  throw explainCode(code, "the picture could not be written",
                    "check that the output's folder has room");
}

Picture describePicture(const Session& session, const std::string& name) {
  SourceFile file(name);
  Described described = describeFile(session, file);
  if (described.family != Family::jpeg) {
    throw Failure("it holds several pictures already",
                  "take them out with \"fiohost mpo extract --jpeg\" first");
  }
  return {std::move(file), std::move(described)};
}

// Readies the record for writing: metadata, options, the output's name and no preview of its own.
void prepare(const Session& session, Picture& picture, const SaveSettings& settings,
             const std::filesystem::path& output) {
  FileData& fileData = picture.described.fileData;
  session.plugin.loadProperties(fileData.handle());
  fileData.setSaveOptions({settings.quality, settings.mode, settings.sample, settings.jfif});
  fileData.setPreview({});
  fileData.setSourcePath(output);
}

[[noreturn]] void rethrowNaming(const std::string& name, const Failure& failure) {
  throw Failure(name + ": " + failure.what(), failure.advice(), failure.code());
}

std::vector<Picture> describeAll(const Session& session, const std::vector<std::string>& names) {
  std::vector<Picture> pictures;
  for (const std::string& name : names) {
    try {
      pictures.push_back(describePicture(session, name));
    } catch (const Failure& failure) {
      rethrowNaming(name, failure);
    }
  }
  return pictures;
}

// The standard wants baseline streams.
SaveSettings settingsFor(const BuildOptions& options) {
  SaveSettings settings = SettingsFile(pluginFolder()).load();
  settings.quality = options.quality.value_or(settings.quality);
  settings.mode = host::modeBaseline;
  return settings;
}

void checkOptions(std::size_t count, const BuildOptions& options) {
  if (count < fewestBuilt || count > host::mpoMostImages) {
    throw Failure("a multi-picture file takes 2 to " + std::to_string(host::mpoMostImages) +
                      " pictures, not " + std::to_string(count),
                  "name other pictures");
  }
  if (options.kind == BuildKind::largeThumbnail && count > mostWithThumbnails) {
    throw Failure("a picture has at most two large thumbnails", "name fewer pictures");
  }
  if (!hasViewpoints(options.kind) && (options.baseline || options.convergence)) {
    throw Failure("pictures of this kind have no viewpoints",
                  "leave out --baseline and --convergence");
  }
}

}  // namespace

host::u64 buildMpo(const Session& session, const std::vector<std::string>& pictures,
                   const std::string& outputName, const BuildOptions& options) {
  checkOptions(pictures.size(), options);
  const SaveSettings settings = settingsFor(options);
  std::vector<Picture> described = describeAll(session, pictures);
  OutputFile output(outputName, options.replace ? Existing::replaced : Existing::refused);
  const std::filesystem::path written = output.handOver();
  const Build build(options, described);
  for (u32 position = 0; position < described.size(); ++position) {
    Picture& picture = described[position];
    const bool severalPasses = picture.described.fileData.jpegTail().mode != host::modeBaseline;
    try {
      prepare(session, picture, settings, written);
      writeImage(session, build, position, picture, severalPasses);
    } catch (const Failure& failure) {
      rethrowNaming(picture.file.name(), failure);
    }
  }
  const host::u64 size = std::filesystem::file_size(written);
  output.commit();
  return size;
}

}  // namespace fiohost
