// Failures: the thread's last error, and what a POSIX error is called in Win32.
#pragma once

#include <new>
#include <string>

#include "platform/posix/windows_api.h"

namespace platform::posix {

// The code for an errno value.
[[nodiscard]] DWORD codeOfError(int error) noexcept;
// The same for a call on a path: a missing file and a missing folder differ.
[[nodiscard]] DWORD codeOfError(int error, const std::string& path);

// Sets the last error and answers `result`.
template <typename Result>
[[nodiscard]] Result failWith(DWORD code, Result result) noexcept {
  SetLastError(code);
  return result;
}

// The body of an exported function: no exception leaves it, and the only one that its parts raise,
// lack of memory, becomes `failure`.
template <typename Result, typename Body>
[[nodiscard]] Result guarded(Result failure, Body body) noexcept {
  try {
    return body();
  } catch (const std::bad_alloc&) {
    return failWith(ERROR_NOT_ENOUGH_MEMORY, failure);
  }
}

}  // namespace platform::posix
