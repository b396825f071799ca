// Where the companion libraries are looked for when the system's normal search fails.
#pragma once

namespace frame {

// From here on a companion that cannot be loaded by name is looked for in the folder "fio" beside
// the host's executable.
void installCompanionSearch() noexcept;

}  // namespace frame
