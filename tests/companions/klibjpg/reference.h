// What libjpeg says when it is called directly, without any code of the codec.
#pragma once

#include "tests/support/jpeg_builder.h"

namespace klibjpg_test {

struct Picture {
  unsigned width = 0;
  unsigned height = 0;
  unsigned channels = 0;
  support::Bytes pixels;  // blue-green-red, grey, or ink with 0 = none

  bool operator==(const Picture&) const = default;
};

// scale is n of n/8. A stream that libjpeg refuses gives an empty picture.
Picture referenceDecode(const support::Bytes& jpeg, unsigned scale = 8);

}  // namespace klibjpg_test
