// Names for files that live as long as a piece of work.
#pragma once

#include <string>

namespace fiohost {

// "fiohost-PROCESS-NUMBER" with a number of its own for every call. A file that an ended process
// left behind may have the name.
[[nodiscard]] std::string temporaryStem();

}  // namespace fiohost
