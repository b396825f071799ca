// The loaded plug-in with the companions that the host calls: what every command works with.
#pragma once

#include "fiohost/companions.h"
#include "fiohost/plugin.h"

namespace fiohost {

// The folder "fio" beside the program.
[[nodiscard]] std::filesystem::path pluginFolder();

struct Session {
  // Loads everything from the folder "fio" beside the program. Throws Failure naming what is
  // missing.
  Session();
  // folder: where the plug-in lies.
  explicit Session(std::filesystem::path folder);

  std::filesystem::path folder;
  Codec codec;
  ExifLibrary exif;
  FileUtilities utilities;
  ErrorReports reports;
  Plugin plugin;
  Module resources;  // KFRES.DLL: labels and value names
};

}  // namespace fiohost
