// A multi-picture file's image list for people and for programs.
#pragma once

#include <string>

#include "fiohost/json_value.h"
#include "fiohost/mpo_list.h"

namespace fiohost {

// Lines of text, the file's name first, each image indented below it.
[[nodiscard]] std::string listInWords(const std::string& name, const MpoFile& file);

// One object with the same keys for every file; an image's attributes are those that it has.
[[nodiscard]] Json listInJson(const std::string& name, const MpoFile& file);

}  // namespace fiohost
