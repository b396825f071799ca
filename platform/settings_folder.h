// Where a user's settings are kept.
#pragma once

#include <string>

namespace platform {

// The folder "kfio" among the user's settings, with a separator at its end; made when it is
// missing. Empty when the system names no place for settings.
[[nodiscard]] std::string settingsFolder();

}  // namespace platform
