// A JSON value as the commands print it: its members keep the order in which they were put in.
#pragma once

#include <nlohmann/json.hpp>

namespace fiohost {

using Json = nlohmann::ordered_json;

}  // namespace fiohost
