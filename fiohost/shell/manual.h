// The manual page, in the macros of man(7).
#pragma once

#include "fiohost/shell/command_line.h"

namespace fiohost {

[[nodiscard]] std::string manualPage(const CLI::App& app);

}  // namespace fiohost
