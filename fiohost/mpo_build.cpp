#include "fiohost/mpo_build.h"

#include <algorithm>

#include "fiohost/describe.h"
#include "fiohost/explain.h"
#include "fiohost/interrupt.h"
#include "fiohost/output_file.h"
#include "fiohost/progress.h"
#include "fiohost/row_reader.h"
#include "fiohost/save_settings.h"
#include "fiohost/whole_metadata.h"

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

// The attribute as it was given, or added with the value that it has when it was not.
GivenAttribute& entryOf(std::vector<GivenAttribute>& given, u32 presence, MpoRational absent) {
  const auto found = std::find_if(given.begin(), given.end(), [presence](const auto& one) {
    return one.attribute->presence == presence;
  });
  if (found != given.end()) return *found;
  const auto all = mpoAttributes();
  const auto row = std::find_if(all.begin(), all.end(), [presence](const MpoAttribute& attribute) {
    return attribute.presence == presence;
  });
  given.push_back({&*row, {absent}});
  return given.back();
}

// One value is the step between neighbours that stand in a row from the first image on.
void spreadStep(GivenAttribute& given, std::size_t imageCount) {
  if (given.values.size() != 1 || isUnknown(given.values.front())) return;
  const MpoRational step = given.values.front();
  given.values.clear();
  for (std::size_t i = 0; i < imageCount; ++i) {
    const host::i64 numerator =
        host::i64{static_cast<host::i32>(step.numerator)} * static_cast<host::i64>(i);
    const MpoRational value = {static_cast<u32>(numerator), step.denominator};
    if (std::abs(numerator) > 0x7FFFFFFF || !isInRange(*given.attribute, value)) {
      throw Failure(
          std::string(given.attribute->option) + " is too much for image " + std::to_string(i + 1),
          "give each image its own value, with commas between them");
    }
    given.values.push_back(value);
  }
}

// The attributes that the images get: those of viewpoints are there even when nobody knows them.
std::vector<GivenAttribute> settledAttributes(const BuildOptions& options, std::size_t imageCount) {
  std::vector<GivenAttribute> settled = options.attributes;
  if (!hasViewpoints(options.kind)) return settled;
  entryOf(settled, host::presenceBaseViewpoint, {1, 1});
  for (const u32 presence : {host::presenceConvergenceAngle, host::presenceBaselineLength}) {
    spreadStep(entryOf(settled, presence, unknownRatio), imageCount);
  }
  return settled;
}

bool fitsVga(const host::FileDataRecord& record) {
  return std::max(record.width, record.height) <= 640 &&
         std::min(record.width, record.height) <= 480;
}

// One file's pictures with everything that the writer asks about them.
class Build {
 public:
  Build(const BuildOptions& options, std::vector<Picture>& pictures)
      : options_(options),
        attributes_(settledAttributes(options, pictures.size())),
        pictures_(pictures) {}

  [[nodiscard]] u32 imageCount() const { return static_cast<u32>(pictures_.size()); }

  // number counts from 1.
  void describe(MpoImageDesc& image, u32 number) const {
    image.representative = number == 1 ? 1 : 0;
    nameUniquely(image, number);
    if (options_.kind == BuildKind::largeThumbnail) {
      describeDependence(image, number);
      return;
    }
    image.typeClass = classMultiFrame;
    image.typeSubCode = subCodeOf(options_.kind);
    for (const GivenAttribute& given : attributes_) {
      fiohost::describe(*given.attribute, given.at(number - 1), image);
    }
  }

 private:
  void nameUniquely(MpoImageDesc& image, u32 number) const {
    if (options_.uniqueIds.empty()) return;
    const std::string& id = options_.uniqueIds[number - 1];
    std::copy(id.begin(), id.end(), image.uid);
    image.flags = image.flags | host::presenceUniqueId;
  }

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
  std::vector<GivenAttribute> attributes_;
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
  takeWhole(session, picture.file, picture.described,
            [&](Described& target) { session.plugin.loadProperties(target.fileData.handle()); });
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

bool isUsed(AttributeUse use, BuildKind kind) {
  if (kind == BuildKind::largeThumbnail) return false;
  if (use == AttributeUse::everyMultiFrame) return true;
  return (use == AttributeUse::panorama) == (kind == BuildKind::panorama);
}

void checkAttribute(const GivenAttribute& given, std::size_t count, const BuildOptions& options) {
  const std::string option = given.attribute->option;
  if (!isUsed(given.attribute->use, options.kind)) {
    throw Failure("pictures of this kind have no " + option, "leave it out");
  }
  if (given.values.size() != 1 && given.values.size() != count) {
    throw Failure(option + " has " + std::to_string(given.values.size()) + " values for " +
                      std::to_string(count) + " pictures",
                  "give one for all or one each");
  }
  const auto sameTag = [](const GivenAttribute& other) {
    return other.attribute->presence == host::presencePitchAngle;
  };
  if (given.attribute->presence == host::presenceRollAngle &&
      std::any_of(options.attributes.begin(), options.attributes.end(), sameTag)) {
    throw Failure("--roll and --pitch exclude each other",
                  "the plug-in writes both under the pitch angle's tag");
  }
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
  if (!options.uniqueIds.empty() && options.uniqueIds.size() != count) {
    throw Failure("there are " + std::to_string(count) + " pictures and " +
                      std::to_string(options.uniqueIds.size()) + " unique IDs",
                  "give each picture one");
  }
  for (const GivenAttribute& given : options.attributes) checkAttribute(given, count, options);
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
      requireExifSegment(picture.described.fileData);
    } catch (const Failure& failure) {
      rethrowNaming(picture.file.name(), failure);
    }
  }
  const host::u64 size = std::filesystem::file_size(written);
  output.commit();
  return size;
}

}  // namespace fiohost
