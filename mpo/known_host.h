// The hosts that show a large multi-picture image as its own preview.
#pragma once

#include <string_view>

namespace mpo {

// True when the file name behind the path's last backslash begins with a known host's name,
// whatever its case. A path without a backslash is no known host's.
[[nodiscard]] bool isKnownHost(std::string_view executablePath) noexcept;

// The same for the process's own executable.
[[nodiscard]] bool runsInKnownHost() noexcept;

}  // namespace mpo
