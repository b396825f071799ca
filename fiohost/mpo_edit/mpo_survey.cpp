#include "fiohost/mpo_edit/mpo_survey.h"

#include <algorithm>

#include "fiohost/mpo_edit/stream_match.h"

namespace fiohost {
namespace {

using mpo::MpfValue;
using std::uint32_t;
using std::uint64_t;

constexpr const char* repairAdvice = "\"fiohost mpo repair\" writes it right";

std::string bytesText(uint64_t count) {
  return std::to_string(count) + (count == 1 ? " byte" : " bytes");
}

// Where the index says that an image begins. The first image's offset is 0 by definition.
uint64_t listedStart(const MpoSurvey& survey, std::size_t image) {
  const uint64_t offset = survey.images[image].offset;
  return image == 0 ? offset : survey.header + offset;
}

class Surveyor {
 public:
  explicit Surveyor(ByteView file) : file_(file) {}

  MpoSurvey survey() {
    survey_.streams = streamsFrom(file_, 0);
    if (!takeIndex()) return std::move(survey_);
    std::vector<ListedPlace> places;
    for (std::size_t i = 0; i < survey_.images.size(); ++i) {
      places.push_back({listedStart(survey_, i), survey_.images[i].size});
    }
    takeCutPictures(places);
    survey_.streamOf = matchStreams(places, survey_.streams);
    for (std::size_t i = 0; i < survey_.images.size(); ++i) checkImage(i);
    checkRepresentatives();
    return std::move(survey_);
  }

 private:
  void add(IndexFault kind, std::size_t image, std::string problem, std::string advice) {
    survey_.faults.push_back(
        {kind, static_cast<uint32_t>(image), std::move(problem), std::move(advice)});
  }

  // A picture that begins where the index says but never ends, behind all that do end.
  void takeCutPictures(const std::vector<ListedPlace>& places) {
    for (const ListedPlace& place : places) {
      if (place.start < survey_.streams.back().end) continue;
      std::optional<JpegStream> stream = streamAt(file_, place.start);
      if (stream && !stream->complete) survey_.streams.push_back(std::move(*stream));
    }
  }

  // False when there are no images to check.
  bool takeIndex() {
    const bool picture = !survey_.streams.empty() && survey_.streams.front().start == 0;
    const StreamSegment* segment = picture ? mpfSegmentOf(file_, survey_.streams.front()) : nullptr;
    if (segment == nullptr) {
      add(IndexFault::noIndex, 0, "the file has no multi-picture index",
          "use it as a picture that stands alone");
      return false;
    }
    survey_.header = segment->payload + mpo::mpfSignatureSize;
    survey_.block = parseMpf(payloadOf(file_, *segment));
    const MpfEntry* table =
        survey_.block.index ? survey_.block.index->find(MpfValue::entryTable) : nullptr;
    if (!survey_.block.whole || table == nullptr) {
      add(IndexFault::damagedIndex, 0, "its multi-picture index is damaged and cannot be read",
          "take the pictures out with another program and build the file anew with "
          "\"fiohost mpo build\"");
    }
    if (table == nullptr) return false;
    survey_.images = mpImagesOf(survey_.block, *table);
    checkCount();
    return !survey_.images.empty();
  }

  void checkCount() {
    const MpfEntry* count = survey_.block.index->find(MpfValue::imageCount);
    const uint32_t told = count != nullptr ? mpfNumber(survey_.block, *count) : 0;
    if (told == survey_.images.size()) return;
    add(IndexFault::imageCount, 0,
        "the index tells of " + std::to_string(told) + " images and lists " +
            std::to_string(survey_.images.size()),
        repairAdvice);
  }

  void checkImage(std::size_t i) {
    checkDependents(i);
    const std::size_t number = i + 1;
    const std::optional<std::size_t>& matched = survey_.streamOf[i];
    if (!matched) {
      add(IndexFault::missing, number, "there is no picture for it in the file",
          survey_.repairable() ? "fetch the file again, or let \"fiohost mpo repair\" drop it"
                               : "fetch the file again");
      return;
    }
    const JpegStream& stream = survey_.streams[*matched];
    if (listedStart(survey_, i) != stream.start) {
      add(IndexFault::place, number,
          "the index says that it begins at byte " + std::to_string(listedStart(survey_, i)) +
              ", but it begins at byte " + std::to_string(stream.start),
          repairAdvice);
    }
    if (!stream.complete) {
      add(IndexFault::cut, number, "its picture ends without an end-of-image marker",
          "fetch the file again from where it came");
    } else if (!fits(i, *matched)) {
      add(IndexFault::size, number,
          "the index says that it has " + bytesText(survey_.images[i].size) + ", but it has " +
              bytesText(stream.size()),
          repairAdvice);
    }
  }

  // A size may take in the filling behind the picture.
  [[nodiscard]] bool fits(std::size_t image, std::size_t matched) const {
    const JpegStream& stream = survey_.streams[matched];
    const uint64_t size = survey_.images[image].size;
    if (size < stream.size() || size > file_.size() - stream.start) return false;
    return isFilling(file_, stream.end, stream.start + size);
  }

  void checkDependents(std::size_t i) {
    for (const std::uint16_t dependent : survey_.images[i].dependents) {
      if (dependent <= survey_.images.size() && dependent != i + 1) continue;
      add(IndexFault::dependent, i + 1,
          "it names image " + std::to_string(dependent) + " as dependent, and there is no such",
          repairAdvice);
    }
  }

  void checkRepresentatives() {
    std::size_t seen = 0;
    for (std::size_t i = 0; i < survey_.images.size(); ++i) {
      const bool marked = (survey_.images[i].attribute & mpRepresentative) != 0;
      if (!marked || ++seen == 1) continue;
      add(IndexFault::representative, i + 1,
          "it is marked as the image to show first, and so is another", repairAdvice);
    }
  }

  ByteView file_;
  MpoSurvey survey_;
};

}  // namespace

std::string FoundFault::sentence(const std::string& file) const {
  const std::string where = image != 0 ? ": image " + std::to_string(image) : "";
  return file + where + ": " + problem + "; " + advice;
}

const char* faultName(IndexFault kind) {
  constexpr const char* names[] = {"no index", "damaged index",  "image count",
                                   "place",    "size",           "missing",
                                   "cut",      "representative", "dependent"};
  return names[static_cast<std::size_t>(kind)];
}

std::vector<JpegStream> MpoSurvey::unlisted() const {
  std::vector<JpegStream> result;
  for (std::size_t stream = 0; stream < streams.size(); ++stream) {
    if (std::find(streamOf.begin(), streamOf.end(), stream) == streamOf.end()) {
      result.push_back(streams[stream]);
    }
  }
  return result;
}

bool MpoSurvey::repairable() const {
  return std::count_if(streamOf.begin(), streamOf.end(),
                       [](const auto& stream) { return stream.has_value(); }) > 1;
}

MpoSurvey surveyMpo(ByteView file) { return Surveyor(file).survey(); }

}  // namespace fiohost
