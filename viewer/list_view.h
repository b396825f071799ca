// Columns and rows of a list control in report view: a name and a value.
#pragma once

#include <optional>
#include <string>

#include "platform/system.h"

namespace viewer {

// titleString: of the resource library. False when the column cannot be had.
[[nodiscard]] bool addListColumn(HWND list, int index, UINT titleString, int width);

// icon: its place in the list's image list.
void addListRow(HWND list, int index, const std::string& name, const std::string& value,
                std::optional<int> icon = std::nullopt);

}  // namespace viewer
