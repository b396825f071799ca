// What a file holds that saving its first picture anew would lose.
#pragma once

#include <string>
#include <vector>

#include "fiohost/streams/jpeg_stream.h"

namespace fiohost {

enum class LossKind { images, gainMap, extendedXmp, comment, segment, trailing };

struct Loss {
  LossKind kind;
  std::string what;  // as it stands behind "loses", such as "2 other images"
  bool keepable;     // by keeping what lies behind the first picture
};

// What the save keeps by itself.
struct SavePlan {
  bool behindPicture = false;                // other images and data behind the first picture
  bool metadata = true;                      // false: the user wants none, which is no loss
  bool extendedXmp = true;                   // packets of several segments
  std::size_t largestSegment = mostPayload;  // bytes of payload
};

// Nothing for a file that is no JPEG.
[[nodiscard]] std::vector<Loss> lossesOfSave(ByteView file, const SavePlan& plan);

// "2 other images, a gain map and a comment".
[[nodiscard]] std::string lossesInWords(const std::vector<Loss>& losses);

}  // namespace fiohost
