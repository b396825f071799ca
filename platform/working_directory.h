// The current directory as a scoped change.
#pragma once

#include <mutex>

#include "platform/system.h"

namespace platform {

// The current directory while calls of this module have it changed. It is the process's: when
// several threads are here, the first one notes it and the last one restores it.
class SharedWorkingDirectory {
 public:
  void enter() noexcept {
    const std::lock_guard guard(mutex_);
    if (users_++ == 0) change();
  }
  void leave() noexcept {
    const std::lock_guard guard(mutex_);
    if (--users_ == 0 && saved_[0] != L'\0') SetCurrentDirectoryW(saved_);
  }

 private:
  void change() noexcept {
    const DWORD length = GetCurrentDirectoryW(capacity, saved_);
    if (length == 0 || length >= capacity) {
      saved_[0] = L'\0';
      return;  // what cannot be restored is not changed
    }
    wchar_t temporary[capacity] = {};
    const DWORD temporaryLength = GetTempPathW(capacity, temporary);
    if (temporaryLength != 0 && temporaryLength < capacity) SetCurrentDirectoryW(temporary);
  }

  static constexpr DWORD capacity = 260;

  std::mutex mutex_;
  unsigned users_ = 0;
  wchar_t saved_[capacity] = {};
};

// The codec runs with the temporary folder as current directory, where it may put scratch files.
// The directory that was current before is restored on every way out.
class TemporaryWorkingDirectory {
 public:
  TemporaryWorkingDirectory() noexcept { shared.enter(); }
  ~TemporaryWorkingDirectory() { restore(); }
  TemporaryWorkingDirectory(const TemporaryWorkingDirectory&) = delete;
  TemporaryWorkingDirectory& operator=(const TemporaryWorkingDirectory&) = delete;

  void restore() noexcept {
    if (here_) shared.leave();
    here_ = false;
  }

 private:
  static inline SharedWorkingDirectory shared;

  bool here_ = true;
};

}  // namespace platform
