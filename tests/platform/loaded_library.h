// A reference to a module, given back when it goes.
#pragma once

#include <filesystem>
#include <string>
#include <utility>

#include "platform/system.h"

class LoadedLibrary {
 public:
  explicit LoadedLibrary(const std::string& name) : handle_(LoadLibraryA(name.c_str())) {}
  explicit LoadedLibrary(HMODULE taken) : handle_(taken) {}
  ~LoadedLibrary() { release(); }
  LoadedLibrary(const LoadedLibrary&) = delete;
  LoadedLibrary& operator=(const LoadedLibrary&) = delete;

  bool release() {
    HMODULE handle = std::exchange(handle_, nullptr);
    return handle != nullptr && FreeLibrary(handle);
  }
  [[nodiscard]] HMODULE get() const { return handle_; }

  // An export as the function or data type that it is.
  template <typename Export>
  [[nodiscard]] Export find(const char* nameOrOrdinal) const {
    return reinterpret_cast<Export>(
        reinterpret_cast<void*>(GetProcAddress(handle_, nameOrOrdinal)));
  }

 private:
  HMODULE handle_;
};

// The folder of the running program, where the greeter lies in the common tests.
inline std::filesystem::path programFolder() {
  char path[MAX_PATH] = {};
  GetModuleFileNameA(nullptr, path, MAX_PATH);
  return std::filesystem::path(path).parent_path();
}

inline std::string apart(const std::string& name) {
  return (programFolder() / "apart" / name).string();
}
