// The plug-in's error codes in words.
#pragma once

#include <string>

#include "fiohost/failure.h"

namespace fiohost {

// The failure that stands for a reported code; 0 (no report) gives otherwise with its advice.
[[nodiscard]] Failure explainCode(int code, const std::string& otherwise,
                                  const std::string& otherwiseAdvice);

}  // namespace fiohost
