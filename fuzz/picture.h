// The input as the open host serves it.
#pragma once

#include <optional>

#include "fiohost/describe.h"
#include "fiohost/failure.h"
#include "fuzz/input.h"

namespace fuzz {

// Describes the input file, or gives nothing when the host refuses it.
inline std::optional<fiohost::Described> describeInput(const fiohost::SourceFile& file) {
  try {
    return fiohost::describeFile(session(), file);
  } catch (const fiohost::Failure&) {
    return std::nullopt;
  }
}

}  // namespace fuzz
