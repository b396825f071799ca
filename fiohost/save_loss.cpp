#include "fiohost/save_loss.h"

#include <algorithm>
#include <string_view>

#include "fiohost/jpeg_segments.h"
#include "fiohost/strip/picture_streams.h"

namespace fiohost {
namespace {

using namespace std::string_view_literals;

// How XMP packets tell of a gain map (ISO 21496-1, annex on metadata; container directories list it
// by its meaning), and the auxiliary image that means the same.
constexpr std::string_view gainMapWords[] = {"hdrgm:"sv, R"(Item:Semantic="GainMap")"sv,
                                             "hdrgainmap"sv};

std::string counted(std::uint64_t count, const std::string& one) {
  return std::to_string(count) + " " + one + (count == 1 ? "" : "s");
}

bool tellsOfGainMap(const std::vector<JpegSegment>& segments) {
  return std::any_of(segments.begin(), segments.end(), [](const JpegSegment& segment) {
    const std::string_view text(reinterpret_cast<const char*>(segment.payload.data()),
                                segment.payload.size());
    return isXmp(segment) && std::any_of(std::begin(gainMapWords), std::end(gainMapWords),
                                         [&](std::string_view word) {
                                           return text.find(word) != std::string_view::npos;
                                         });
  });
}

class Finder {
 public:
  Finder(ByteView file, const SavePlan& plan)
      : file_(file), plan_(plan), pictures_(pictureStreams(file)), layout_(layoutOf(file)) {}

  std::vector<Loss> find() {
    if (!plan_.behindPicture) findBehind();
    if (plan_.metadata) findSegments();
    return std::move(losses_);
  }

 private:
  void findBehind() {
    std::size_t others = 0;
    std::size_t gainMaps = 0;
    for (std::size_t i = 1; i < pictures_.images.size(); ++i) ++(isGainMap(i) ? gainMaps : others);
    if (others != 0) add(LossKind::images, counted(others, "other image"), true);
    const bool single = pictures_.images.size() == 1;
    if (single && !pictures_.others.empty() && tellsOfGainMap(layout_.segments)) {
      gainMaps = 1;
    }
    if (gainMaps != 0) add(LossKind::gainMap, "a gain map", true);
    const std::uint64_t rest = restBytes(single && gainMaps != 0);
    if (rest != 0) {
      add(LossKind::trailing, counted(rest, "byte") + " of data behind the picture", true);
    }
  }

  // An image of no class that the standard has, in a file whose first image tells of a gain map or
  // that tells so itself.
  [[nodiscard]] bool isGainMap(std::size_t image) const {
    const JpegStream& stream = pictures_.images[image];
    const auto own = layoutOf(file_.subspan(static_cast<std::size_t>(stream.start),
                                            static_cast<std::size_t>(stream.size())));
    const bool undefined = (entryOf(stream).attribute & mpTypeMask) == 0;
    return tellsOfGainMap(own.segments) || (undefined && tellsOfGainMap(layout_.segments));
  }

  [[nodiscard]] const MpImage& entryOf(const JpegStream& stream) const {
    const MpoSurvey& survey = pictures_.survey;
    const auto found =
        std::find_if(survey.streamOf.begin(), survey.streamOf.end(), [&](const auto& matched) {
          return matched && survey.streams[*matched].start == stream.start;
        });
    return survey.images[static_cast<std::size_t>(found - survey.streamOf.begin())];
  }

  // What is no image; a gain map that no index lists is told of already.
  [[nodiscard]] std::uint64_t restBytes(bool firstTold) const {
    std::uint64_t bytes = 0;
    for (std::size_t i = firstTold ? 1 : 0; i < pictures_.others.size(); ++i) {
      bytes += pictures_.others[i].size();
    }
    for (const ByteRange& gap : pictures_.gaps) bytes += gap.to - gap.from;
    return bytes;
  }

  void findSegments() {
    std::size_t comments = 0;
    std::size_t extended = 0;
    for (const JpegSegment& segment : layout_.segments) {
      if (segment.marker == markerComment) ++comments;
      if (isExtendedXmp(segment)) ++extended;
      if (segment.payload.size() > plan_.largestSegment) {
        add(LossKind::segment,
            segmentName(segment) + " of " + counted(segment.payload.size(), "byte"), false);
      }
    }
    if (extended != 0 && !plan_.extendedXmp) add(LossKind::extendedXmp, "extended XMP", false);
    if (comments != 0) add(LossKind::comment, counted(comments, "comment"), false);
  }

  void add(LossKind kind, std::string what, bool keepable) {
    losses_.push_back({kind, std::move(what), keepable});
  }

  ByteView file_;
  SavePlan plan_;
  PictureStreams pictures_;
  JpegLayout layout_;
  std::vector<Loss> losses_;
};

}  // namespace

std::vector<Loss> lossesOfSave(ByteView file, const SavePlan& plan) {
  if (!streamAt(file, 0)) return {};
  return Finder(file, plan).find();
}

std::string lossesInWords(const std::vector<Loss>& losses) {
  std::string words;
  for (std::size_t i = 0; i < losses.size(); ++i) {
    if (i != 0) words += i + 1 == losses.size() ? " and " : ", ";
    words += losses[i].what;
  }
  return words;
}

}  // namespace fiohost
