// The current directory as a scoped change.
#pragma once

#include "platform/system.h"

namespace platform {

// The codec runs with the temporary folder as current directory, where it may put scratch files.
// The directory that was current before is restored on every way out.
class TemporaryWorkingDirectory {
 public:
  TemporaryWorkingDirectory() noexcept {
    const DWORD length = GetCurrentDirectoryW(capacity, saved_);
    if (length == 0 || length >= capacity) {
      saved_[0] = L'\0';
      return;  // what cannot be restored is not changed
    }
    wchar_t temporary[capacity] = {};
    const DWORD temporaryLength = GetTempPathW(capacity, temporary);
    if (temporaryLength != 0 && temporaryLength < capacity) SetCurrentDirectoryW(temporary);
  }
  ~TemporaryWorkingDirectory() { restore(); }
  TemporaryWorkingDirectory(const TemporaryWorkingDirectory&) = delete;
  TemporaryWorkingDirectory& operator=(const TemporaryWorkingDirectory&) = delete;

  void restore() noexcept {
    if (saved_[0] != L'\0') SetCurrentDirectoryW(saved_);
    saved_[0] = L'\0';
  }

 private:
  static constexpr DWORD capacity = 260;
  wchar_t saved_[capacity] = {};
};

}  // namespace platform
