// A desktop of the test program's own. Windows of other programs then cannot cover its windows or
// take their focus, nothing flashes on a developer's screen, and under Wine the desktop lives on
// the X display that the program was started with, whatever the other programs of the prefix use.
#pragma once

#include <optional>

namespace test {

// Starts the program once more on a new desktop and answers its exit code; nothing in that second
// start, which has to run the tests itself. The second process ends with the first.
[[nodiscard]] std::optional<int> runOnPrivateDesktop();

}  // namespace test
