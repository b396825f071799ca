// For targets that link the plug-in's code itself: attaches it like the module, once.
#pragma once

#include <cstdlib>

#include "frame/module.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID reserved) noexcept;

namespace fuzz {

inline void attachOnce() {
  static const bool attached =
      DllMain(GetModuleHandleA(nullptr), DLL_PROCESS_ATTACH, nullptr) != FALSE;
  if (!attached) std::abort();
}

}  // namespace fuzz
