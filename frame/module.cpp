#include "frame/module.h"

#include "frame/companion_search.h"
#include "frame/save_options.h"

namespace frame {
namespace {

HMODULE ownModule = nullptr;
HMODULE resources = nullptr;

// The host's common library may want to know each plug-in; older ones have no such entry. The
// reference is given back at once: the lazy imports hold the library for as long as it is used.
void introduceToCommonLibrary() noexcept {
  HMODULE common = LoadLibraryA("k32Comm.dll");
  if (common == nullptr) return;
  using SetInitMsgString = void(HMODULE);
  void* entry = reinterpret_cast<void*>(GetProcAddress(common, "LauncherSetInitMsgString"));
  if (entry != nullptr) reinterpret_cast<SetInitMsgString*>(entry)(ownModule);
  FreeLibrary(common);
}

BOOL attach(HMODULE module) noexcept {
  DisableThreadLibraryCalls(module);
  ownModule = module;
  resources = LoadLibraryA("KFRES.DLL");
  if (resources == nullptr) return FALSE;
  installCompanionSearch();
  loadSaveOptions();
  introduceToCommonLibrary();
  return TRUE;
}

BOOL detach() noexcept {
  if (resources != nullptr) FreeLibrary(resources);
  resources = nullptr;
  return TRUE;
}

}  // namespace

HMODULE moduleHandle() noexcept { return ownModule; }

HMODULE resourceLibrary() noexcept { return resources; }

}  // namespace frame

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID) noexcept {
  switch (reason) {
    case DLL_PROCESS_ATTACH:
      return frame::attach(module);
    case DLL_PROCESS_DETACH:
      return frame::detach();
    default:
      return TRUE;
  }
}
