// What every fuzz target stands on: one call for one input, after which nothing may be left behind.
#pragma once

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <filesystem>
#include <span>

#include "fiohost/session.h"

namespace fuzz {

using Bytes = std::span<const std::uint8_t>;

// The open host with the built plug-in and companions, made at the first call. Settings lie in a
// file of this process's own.
[[nodiscard]] const fiohost::Session& session();

// A folder of this process's own, which is removed when it ends.
[[nodiscard]] const std::filesystem::path& scratchFolder();

// The input as a file of the scratch folder: name is its name there. Answers its full path.
std::filesystem::path writeInput(const char* name, Bytes input);

// Ends the process with a report when more than 2 s of processor time pass between construction and
// destruction. The clock of the wall would count what other processes do.
class InTime {
 public:
  InTime() = default;
  InTime(const InTime&) = delete;
  InTime& operator=(const InTime&) = delete;
  ~InTime();

 private:
  std::clock_t start_ = std::clock();
};

// Ends the process with a report when blocks, locks, files, mappings or views are left behind, or
// the current directory has changed, between construction and destruction, or when it took too
// long.
class NothingLeft {
 public:
  NothingLeft();
  NothingLeft(const NothingLeft&) = delete;
  NothingLeft& operator=(const NothingLeft&) = delete;
  ~NothingLeft();

 private:
  struct State;
  State* before_;
  InTime inTime_;
};

// A property record that a parser fills; freed with its blocks as a host would do it.
class PropertySlot {
 public:
  PropertySlot() = default;
  PropertySlot(const PropertySlot&) = delete;
  PropertySlot& operator=(const PropertySlot&) = delete;
  ~PropertySlot();

  [[nodiscard]] HGLOBAL* address() noexcept { return &handle_; }
  [[nodiscard]] HGLOBAL handle() const noexcept { return handle_; }

 private:
  HGLOBAL handle_ = nullptr;
};

}  // namespace fuzz
