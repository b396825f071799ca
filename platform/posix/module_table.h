// The modules that the process knows, and the search for one.
#pragma once

#include <string>

#include "platform/posix/windows_api.h"

namespace platform::posix {

// The address of an export of the module itself (not of what it links to); null module = the main
// one. Null, with the last error set, when the module or the export is not known.
[[nodiscard]] void* findExport(HMODULE module, const char* name) noexcept;

// The path of the executable.
[[nodiscard]] std::string executablePath();

// The file that a library name without a folder stands for, in the search order of LoadLibraryA;
// empty when there is none.
[[nodiscard]] std::string searchModule(const std::string& name);

// The name with ".dll" when it has no dot; a dot at the end only keeps that away.
[[nodiscard]] std::string withModuleExtension(std::string name);

// Whether the file begins like a module of this system.
[[nodiscard]] bool isModuleFile(const std::string& path);

}  // namespace platform::posix
