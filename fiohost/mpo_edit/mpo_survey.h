// A multi-picture file's index against the pictures that really are in the file.
#pragma once

#include <string>

#include "fiohost/mpo_edit/mpf_block.h"

namespace fiohost {

enum class IndexFault {
  noIndex,         // no multi-picture segment, or none that begins an index
  damagedIndex,    // directories or values outside the segment
  imageCount,      // the number of images is not that of the table's entries
  place,           // an image is not where the index says
  size,            // it is not as long as the index says
  missing,         // there is no picture for an entry
  cut,             // a picture has no end
  representative,  // several images are marked as the one to show
  dependent,       // a dependent image's number is that of no image
};

struct FoundFault {
  IndexFault kind;
  std::uint32_t image;  // from 1; 0 for the file
  std::string problem;  // both whole clauses without a final stop
  std::string advice;

  [[nodiscard]] std::string sentence(const std::string& file) const;
};

// The name of a kind in JSON.
[[nodiscard]] const char* faultName(IndexFault kind);

struct MpoSurvey {
  std::vector<JpegStream> streams;  // the first image's, then whatever else was found
  MpfBlock block;                   // the first image's
  std::uint64_t header = 0;         // place of its byte-order field
  std::vector<MpImage> images;      // as the index lists them
  std::vector<std::optional<std::size_t>> streamOf;  // by image
  std::vector<FoundFault> faults;

  // Streams that belong to no image of the index.
  [[nodiscard]] std::vector<JpegStream> unlisted() const;
  // Whether pictures were found for two images or more, so that a right index can be written.
  [[nodiscard]] bool repairable() const;
};

// Looks through a whole file. Nothing is thrown: what is wrong is a fault.
[[nodiscard]] MpoSurvey surveyMpo(ByteView file);

}  // namespace fiohost
