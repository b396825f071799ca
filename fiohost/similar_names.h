// Names as users type them: without regard to case, and what they may have meant.
#pragma once

#include <string>
#include <vector>

namespace fiohost {

[[nodiscard]] std::string lowered(std::string text);

// "a", "b", "c" in quotation marks.
[[nodiscard]] std::string quotedNames(const std::vector<std::string>& names);

// The names that are like the given one, quoted; empty when none is.
[[nodiscard]] std::string similarNames(const std::vector<std::string>& names,
                                       const std::string& given);

}  // namespace fiohost
