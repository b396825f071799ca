// Lazy binding of the companion libraries: the search, its failure hook, and what a call becomes
// when its library or export is missing.
#pragma once

#include "platform/system.h"

namespace platform {

// What the failure hook is told.
enum class DelayNotification : unsigned { libraryNotLoaded = 3, procedureNotFound = 4 };

// Answers a module to use instead, or null to carry on as usual. Never throws.
using DelayFailureHook = HMODULE (*)(DelayNotification notification, const char* library) noexcept;

// Installed once, before the first lazy call of the module that links this code. Null removes it.
void setDelayFailureHook(DelayFailureHook hook) noexcept;

// The library as every lazy call finds it: the system's normal search, then the failure hook. Null
// when neither finds it. The reference that it takes is kept, as lazy binding does.
[[nodiscard]] HMODULE loadDelayed(const char* library) noexcept;

// An export of a lazily bound library by name, or null. Data exports, which cannot be bound
// lazily, are looked up this way.
[[nodiscard]] FARPROC findDelayed(const char* library, const char* name) noexcept;
[[nodiscard]] FARPROC findDelayed(const char* library, WORD ordinal) noexcept;

}  // namespace platform
