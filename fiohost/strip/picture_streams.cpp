#include "fiohost/strip/picture_streams.h"

#include <algorithm>

#include "fiohost/failure.h"

namespace fiohost {
namespace {

std::vector<ByteRange> gapsBetween(ByteView file, const std::vector<JpegStream>& streams) {
  std::vector<ByteRange> gaps;
  std::uint64_t end = 0;
  const auto add = [&](std::uint64_t to) {
    if (to > end && !isFilling(file, end, to)) gaps.push_back({end, to});
  };
  for (const JpegStream& stream : streams) {
    add(stream.start);
    end = stream.end;
  }
  add(file.size());
  return gaps;
}

}  // namespace

PictureStreams pictureStreams(ByteView file) {
  PictureStreams result;
  result.survey = surveyMpo(file);
  const MpoSurvey& survey = result.survey;
  if (survey.streams.empty() || survey.streams.front().start != 0) {
    throw Failure("this is no JPEG file", "check the file");
  }
  result.gaps = gapsBetween(file, survey.streams);
  result.several = survey.repairable();
  if (!result.several) {
    result.images = {survey.streams.front()};
    result.others.assign(survey.streams.begin() + 1, survey.streams.end());
    return result;
  }
  for (const auto& stream : survey.streamOf) {
    if (stream) result.images.push_back(survey.streams[*stream]);
  }
  result.others = survey.unlisted();
  return result;
}

bool isMetadata(const StreamSegment& segment) {
  return (segment.marker >= markerApp0 && segment.marker <= markerApp0 + 15) ||
         segment.marker == markerComment;
}

}  // namespace fiohost
