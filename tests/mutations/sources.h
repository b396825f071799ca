// The good files that mutations start from: small, and between them with every structure that the
// readers know.
#pragma once

#include <vector>

#include "tests/support/jpeg_builder.h"

namespace mutations {

[[nodiscard]] std::vector<support::Bytes> sources();

}  // namespace mutations
