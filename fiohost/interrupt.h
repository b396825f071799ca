// Ctrl+C as a flag: a read under way stops and cleans up after itself.
#pragma once

namespace fiohost {

void watchInterrupt();
[[nodiscard]] bool interrupted();

}  // namespace fiohost
