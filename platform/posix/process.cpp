#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <ctime>
#include <string_view>

#include "platform/posix/errors.h"
#include "platform/posix/paths.h"

using namespace platform::posix;

ULONGLONG GetTickCount64() noexcept {
  timespec now = {};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return static_cast<ULONGLONG>(now.tv_sec) * 1000 + static_cast<ULONGLONG>(now.tv_nsec) / 1000000;
}

DWORD GetCurrentThreadId() noexcept { return static_cast<DWORD>(gettid()); }

PVOID InterlockedExchangePointer(PVOID volatile* target, PVOID value) noexcept {
  return __atomic_exchange_n(target, value, __ATOMIC_SEQ_CST);
}

DWORD GetEnvironmentVariableA(LPCSTR name, LPSTR buffer, DWORD capacity) noexcept {
  const char* value = name != nullptr ? std::getenv(name) : nullptr;
  if (value == nullptr) return failWith(ERROR_ENVVAR_NOT_FOUND, DWORD{0});
  SetLastError(NO_ERROR);
  return handOut<char>(value, capacity, buffer);
}

BOOL SetEnvironmentVariableA(LPCSTR name, LPCSTR value) noexcept {
  if (name == nullptr) return failWith(ERROR_INVALID_PARAMETER, FALSE);
  const int failed = value != nullptr ? setenv(name, value, 1) : unsetenv(name);
  return failed == 0 || failWith(codeOfError(errno), false);
}
