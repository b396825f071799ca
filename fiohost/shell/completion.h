// What shells complete command lines by.
#pragma once

#include "fiohost/shell/command_line.h"

namespace fiohost {

[[nodiscard]] std::string bashCompletion(const CLI::App& app);
[[nodiscard]] std::string powershellCompletion(const CLI::App& app);

}  // namespace fiohost
