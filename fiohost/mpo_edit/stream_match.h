// Which of the streams found in a file are the images that its index lists, though places and sizes
// in the index may be stale.
#pragma once

#include "fiohost/streams/jpeg_stream.h"

namespace fiohost {

struct ListedPlace {
  std::uint64_t start;
  std::uint64_t size;
};

// A stream's number for each image, none where there is no picture for it. The first image is
// always the first stream. The others go by their places, then by their sizes, and what is left in
// the order of the listed places, which a change of the file in front of them does not alter.
[[nodiscard]] std::vector<std::optional<std::size_t>> matchStreams(
    const std::vector<ListedPlace>& images, const std::vector<JpegStream>& streams);

}  // namespace fiohost
