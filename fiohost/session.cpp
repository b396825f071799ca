#include "fiohost/session.h"

#include <utility>

#include "platform/console/console.h"

namespace fiohost {

std::filesystem::path pluginFolder() { return platform::programFile().parent_path() / "fio"; }

Session::Session() : Session(pluginFolder()) {}

Session::Session(std::filesystem::path path)
    : folder(std::move(path)),
      codec(folder),
      exif(folder),
      utilities(folder),
      reports(folder),
      plugin(folder),
      resources(folder.parent_path() / "KFRES.DLL") {}

}  // namespace fiohost
