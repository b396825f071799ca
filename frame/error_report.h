// The one way in which failures reach the host: a report by numbers, whose texts are the host's.
#pragma once

#include "host/k32comm.h"

namespace frame {

// Who reports. The host shows the numbers beside its message.
struct ErrorSource {
  host::i32 unit;
  host::i32 source;
  host::i32 site = 1;
};

inline constexpr ErrorSource jpegErrors{890, 891};
inline constexpr ErrorSource mpoErrors{1890, 1891};
inline constexpr ErrorSource thumbnailEncoderErrors{1890, 1892};

// position: a number of its own for every reporting place.
void reportError(host::ErrorCode code, const ErrorSource& source, host::i32 position) noexcept;

}  // namespace frame
