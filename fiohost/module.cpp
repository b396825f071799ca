#include "fiohost/module.h"

#include "fiohost/failure.h"
#include "platform/console/console.h"

namespace fiohost {
namespace {

HMODULE loadOrFail(const std::filesystem::path& path) {
  const std::string shown = platform::displayPath(path);
  std::error_code ignored;
  if (!std::filesystem::exists(path, ignored)) {
    throw Failure("the library " + shown + " is missing",
                  "put the folder \"fio\" of the distribution beside fiohost");
  }
  HMODULE handle = platform::loadModule(path);
  if (handle == nullptr) {
    throw Failure("the library " + shown + " cannot be loaded",
                  "check that it belongs to this system and that KFRES.DLL lies beside fiohost");
  }
  return handle;
}

}  // namespace

Module::Module(const std::filesystem::path& path)
    : handle_(loadOrFail(path)), name_(platform::displayPath(path.filename())) {}

Module::~Module() {
  if (handle_ != nullptr) FreeLibrary(handle_);
}

bool Module::has(WORD ordinal) const noexcept {
  return GetProcAddress(handle_, MAKEINTRESOURCEA(ordinal)) != nullptr;
}

FARPROC Module::find(const char* nameOrOrdinal, const std::string& description) const {
  FARPROC found = GetProcAddress(handle_, nameOrOrdinal);
  if (found == nullptr) {
    throw Failure(name_ + " has no export " + description, "a newer " + name_ + " is needed");
  }
  return found;
}

}  // namespace fiohost
