#include "fiohost/temporary_name.h"

#include <atomic>

#include "platform/console/console.h"

namespace fiohost {

std::string temporaryStem() {
  static std::atomic<unsigned long> given = 0;
  return "fiohost-" + std::to_string(platform::processNumber()) + "-" + std::to_string(given++);
}

}  // namespace fiohost
