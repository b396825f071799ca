// What a file is made of: its images, other JPEG streams, and what is neither.
#pragma once

#include "fiohost/mpo_edit/mpo_survey.h"

namespace fiohost {

struct ByteRange {
  std::uint64_t from;
  std::uint64_t to;
};

struct PictureStreams {
  std::vector<JpegStream> images;  // in the order of the index, or the only one
  std::vector<JpegStream> others;  // in no entry of an index
  std::vector<ByteRange> gaps;     // outside all streams, but for filling
  MpoSurvey survey;
  bool several = false;  // images are those of an index
};

// Throws Failure when the file does not begin with a JPEG stream.
[[nodiscard]] PictureStreams pictureStreams(ByteView file);

// Application segments and comments.
[[nodiscard]] bool isMetadata(const StreamSegment& segment);

}  // namespace fiohost
