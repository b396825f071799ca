// A module that loads another one while it is itself being attached.
#include "platform/system.h"

namespace {

HMODULE greeter = nullptr;

}  // namespace

extern "C" {

HMODULE nesterGreeter() { return greeter; }

BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID reserved) {
  if (reason == DLL_PROCESS_ATTACH) greeter = LoadLibraryA("greeter.dll");
  if (reason == DLL_PROCESS_DETACH && reserved == nullptr) FreeLibrary(greeter);
  return TRUE;
}

}  // extern "C"
