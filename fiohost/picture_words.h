// A picture's description for people and for programs.
#pragma once

#include <string>

#include "fiohost/json_value.h"
#include "fiohost/picture_info.h"

namespace fiohost {

// Lines of text, the file's name first, each fact indented below it.
[[nodiscard]] std::string describeInWords(const PictureInfo& info);

// One object; its keys are always the same for a family, null where a fact is not known.
[[nodiscard]] Json describeInJson(const PictureInfo& info);

// One indented line "name   value".
[[nodiscard]] std::string factLine(const std::string& name, const std::string& value);

}  // namespace fiohost
