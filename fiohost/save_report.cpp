#include "fiohost/save_report.h"

#include <algorithm>
#include <optional>

#include "fiohost/picture_words.h"

namespace fiohost {
namespace {

const char* fateName(SegmentFate fate) {
  switch (fate) {
    case SegmentFate::kept:
      return "kept";
    case SegmentFate::changed:
      return "changed";
    case SegmentFate::dropped:
      return "dropped";
    case SegmentFate::added:
      return "added";
  }
  return "";
}

// The saved file's segments that no segment of the source has claimed yet.
class Unclaimed {
 public:
  explicit Unclaimed(const JpegLayout& layout) {
    for (const JpegSegment& segment : layout.segments) left_.push_back(&segment);
  }

  template <typename Matches>
  bool claim(Matches matches) {
    const auto found = std::find_if(left_.begin(), left_.end(),
                                    [&](const JpegSegment* segment) { return matches(*segment); });
    if (found == left_.end()) return false;
    left_.erase(found);
    return true;
  }
  [[nodiscard]] const std::vector<const JpegSegment*>& left() const { return left_; }

 private:
  std::vector<const JpegSegment*> left_;
};

std::string whyDropped(const JpegSegment& segment, const SaveIntent& intent) {
  if (isJfif(segment)) return "left out as the options say";
  if (isAdobe(segment)) return "the codec marks the colours that it writes by itself";
  if (segmentName(segment) == "comment") return "the plug-in keeps application segments only";
  return intent.dropMetadata ? "--drop-metadata was given" : "the plug-in did not keep it";
}

// Null when the segment's values were not set, or it is not there any more.
const char* whyEdited(const JpegSegment& segment, Unclaimed& saved, const EditedParts& edited) {
  if (edited.cameraData && isCameraData(segment) && saved.claim(&isCameraData)) {
    return "its values were set";
  }
  if (edited.iptc && isPhotoshop(segment) && saved.claim(&isPhotoshop)) {
    return "its IPTC values were set";
  }
  if (edited.exif && isExif(segment) && saved.claim(&isExif)) {
    return "built anew from its values, with a new thumbnail";
  }
  return nullptr;
}

SegmentOutcome outcomeOf(const JpegSegment& segment, Unclaimed& saved, const SaveIntent& intent) {
  SegmentOutcome outcome = {segmentName(segment), segment.payload.size(), SegmentFate::kept, ""};
  if (saved.claim([&](const JpegSegment& other) { return other == segment; })) return outcome;
  if (const char* reason = whyEdited(segment, saved, intent.edited)) {
    outcome.fate = SegmentFate::changed;
    outcome.reason = reason;
    return outcome;
  }
  const bool rewritten =
      (isJfif(segment) && saved.claim(&isJfif)) || (isAdobe(segment) && saved.claim(&isAdobe));
  outcome.fate = rewritten ? SegmentFate::changed : SegmentFate::dropped;
  outcome.reason = rewritten ? "the codec writes it anew" : whyDropped(segment, intent);
  return outcome;
}

}  // namespace

std::vector<SegmentOutcome> compareLayouts(const JpegLayout& source, const JpegLayout& saved,
                                           const SaveIntent& intent) {
  std::vector<SegmentOutcome> outcomes;
  Unclaimed unclaimed(saved);
  for (const JpegSegment& segment : source.segments) {
    outcomes.push_back(outcomeOf(segment, unclaimed, intent));
  }
  for (const JpegSegment* segment : unclaimed.left()) {
    const char* reason = isExif(*segment) ? "built from the values" : "written by the codec";
    outcomes.push_back(
        {segmentName(*segment), segment->payload.size(), SegmentFate::added, reason});
  }
  if (source.trailingBytes > 0) {
    outcomes.push_back({"data behind the picture", source.trailingBytes, SegmentFate::dropped,
                        "it does not belong to the picture"});
  }
  return outcomes;
}

std::string outcomesInWords(const std::vector<SegmentOutcome>& outcomes) {
  std::string words;
  for (const SegmentOutcome& outcome : outcomes) {
    std::string value = outcome.name + ", " + std::to_string(outcome.byteCount) + " bytes";
    if (!outcome.reason.empty()) value += " (" + outcome.reason + ")";
    words += factLine(fateName(outcome.fate), value);
  }
  return words;
}

Json outcomesInJson(const std::vector<SegmentOutcome>& outcomes) {
  Json all = Json::array();
  for (const SegmentOutcome& outcome : outcomes) {
    const bool explained = !outcome.reason.empty();
    all.push_back({{"segment", outcome.name},
                   {"bytes", outcome.byteCount},
                   {"result", fateName(outcome.fate)},
                   {"reason", explained ? Json(outcome.reason) : Json(nullptr)}});
  }
  return all;
}

}  // namespace fiohost
