// Which plug-ins the file-I/O layer accepts.
#include "host/kfioutil.h"

// Every plug-in that is really loaded is accepted: there is one version of the contract.
extern "C" int CheckFIOVersion(HMODULE plugin) {
  if (plugin == nullptr) return 0;
  char path[MAX_PATH];
  return GetModuleFileNameA(plugin, path, MAX_PATH) != 0 ? 1 : 0;
}
