// A companion as a host has it: loaded at run time, its exports looked up.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "platform/system.h"

namespace test {

// The folder of the running test program, which lies in tests/NAME of the build folder.
inline std::filesystem::path programFolder() {
  char path[1024] = {};
  GetModuleFileNameA(nullptr, path, sizeof(path));
  return std::filesystem::path(path).parent_path();
}

// A file of the distribution that belongs to this build.
inline std::filesystem::path distributed(const std::string& name) {
  return (programFolder().parent_path().parent_path() / "dist" / name).make_preferred();
}

class LoadedModule {
 public:
  // A path below the distribution's folder. A module that cannot be loaded fails the test.
  explicit LoadedModule(const std::string& name)
      : handle_(LoadLibraryA(distributed(name).string().c_str())) {
    EXPECT_NE(handle_, nullptr) << name;
  }
  LoadedModule(const LoadedModule&) = delete;
  LoadedModule& operator=(const LoadedModule&) = delete;
  ~LoadedModule() {
    if (handle_ != nullptr) FreeLibrary(handle_);
  }

  [[nodiscard]] HMODULE handle() const { return handle_; }

  template <typename Signature>
  [[nodiscard]] Signature* function(const char* name) const {
    return reinterpret_cast<Signature*>(reinterpret_cast<void*>(find(name)));
  }
  template <typename Signature>
  [[nodiscard]] Signature* function(WORD ordinal) const {
    return reinterpret_cast<Signature*>(reinterpret_cast<void*>(find(MAKEINTRESOURCEA(ordinal))));
  }
  template <typename Value>
  [[nodiscard]] const Value* data(const char* name) const {
    return reinterpret_cast<const Value*>(find(name));
  }

 private:
  [[nodiscard]] FARPROC find(const char* nameOrOrdinal) const {
    return handle_ != nullptr ? GetProcAddress(handle_, nameOrOrdinal) : nullptr;
  }

  HMODULE handle_;
};

}  // namespace test
