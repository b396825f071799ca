// The built plug-in with the built companions, as a host has them.
#pragma once

#include "tests/companions/loaded_module.h"

namespace test {

// Loaded first, so that the plug-in finds them by name.
struct Plugin {
  LoadedModule resources{"KFRES.DLL"};
  LoadedModule common{"fio/k32Comm.dll"};
  LoadedModule util{"fio/kFioUtil.dll"};
  LoadedModule exif{"fio/kExifLib.dll"};
  LoadedModule codec{"fio/klibjpg.dll"};
  LoadedModule module{"fio/K32JPG.FIO"};
};
inline const Plugin& plugin() {
  static const Plugin loaded;
  return loaded;
}

template <typename Entry>
Entry* entry(WORD ordinal) {
  return plugin().module.function<Entry>(ordinal);
}

}  // namespace test
