// The menu bar and the keys, made from the table of commands.
#pragma once

#include "fiohost/view/action_state.h"
#include "platform/window_handles.h"

namespace fiohost::view {

struct DestroyKeys {
  void operator()(HACCEL keys) const noexcept { DestroyAcceleratorTable(keys); }
};
using OwnedKeys = std::unique_ptr<std::remove_pointer_t<HACCEL>, DestroyKeys>;

// A window that gets the menu destroys it.
[[nodiscard]] HMENU makeMenuBar();
[[nodiscard]] OwnedKeys makeKeys();

// Enables and checks all entries.
void updateMenu(HMENU bar, const ViewerState& state);

}  // namespace fiohost::view
