// A loaded library: the plug-in or one of its companions.
#pragma once

#include <filesystem>
#include <string>
#include <utility>

#include "platform/system.h"

namespace fiohost {

class Module {
 public:
  // Loads the library at a full path. Throws Failure, naming the path, when it cannot.
  explicit Module(const std::filesystem::path& path);
  Module(Module&& other) noexcept
      : handle_(std::exchange(other.handle_, nullptr)), name_(std::move(other.name_)) {}
  Module(const Module&) = delete;
  Module& operator=(const Module&) = delete;
  Module& operator=(Module&&) = delete;
  ~Module();

  [[nodiscard]] HMODULE handle() const noexcept { return handle_; }
  [[nodiscard]] bool has(WORD ordinal) const noexcept;
  // An export by name or by ordinal. Throws Failure, naming it, when the library lacks it.
  template <typename Signature>
  [[nodiscard]] Signature* entry(const char* name) const {
    return typed<Signature>(find(name, name));
  }
  template <typename Signature>
  [[nodiscard]] Signature* entry(WORD ordinal) const {
    return typed<Signature>(find(MAKEINTRESOURCEA(ordinal), "ordinal " + std::to_string(ordinal)));
  }

 private:
  [[nodiscard]] FARPROC find(const char* nameOrOrdinal, const std::string& description) const;

  template <typename Signature>
  static Signature* typed(FARPROC found) noexcept {
    return reinterpret_cast<Signature*>(reinterpret_cast<void*>(found));
  }

  HMODULE handle_;
  std::string name_;
};

}  // namespace fiohost
