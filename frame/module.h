// The module-wide state: handles that are valid from attach to detach.
#pragma once

#include "platform/system.h"

namespace frame {

// The plug-in's own module.
[[nodiscard]] HMODULE moduleHandle() noexcept;

// KFRES.DLL: every string and dialog template comes from it. Never null while attached.
[[nodiscard]] HMODULE resourceLibrary() noexcept;

}  // namespace frame
