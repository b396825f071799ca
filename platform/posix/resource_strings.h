// The string table of a module: what LoadStringA reads in place of Windows' resources.
//
// A module defines the table under the symbol "resource.strings":
//   extern "C" const platform::posix::ResourceString strings[] asm("resource.strings");
#pragma once

namespace platform::posix {

// One string; an entry with a null text ends the table.
struct ResourceString {
  unsigned id;
  const char* text;  // UTF-8
};

}  // namespace platform::posix
