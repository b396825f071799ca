#include "platform/delay_load.h"

namespace platform {
namespace {

DelayFailureHook failureHook = nullptr;

HMODULE askFailureHook(DelayNotification notification, const char* library) noexcept {
  return failureHook != nullptr ? failureHook(notification, library) : nullptr;
}

FARPROC findIn(const char* library, const char* nameOrOrdinal) noexcept {
  HMODULE module = loadDelayed(library);
  if (module == nullptr) return nullptr;
  FARPROC found = GetProcAddress(module, nameOrOrdinal);
  if (found == nullptr) askFailureHook(DelayNotification::procedureNotFound, library);
  return found;
}

}  // namespace

void setDelayFailureHook(DelayFailureHook hook) noexcept { failureHook = hook; }

HMODULE loadDelayed(const char* library) noexcept {
  if (HMODULE module = LoadLibraryA(library)) return module;
  return askFailureHook(DelayNotification::libraryNotLoaded, library);
}

FARPROC findDelayed(const char* library, const char* name) noexcept {
  return findIn(library, name);
}

FARPROC findDelayed(const char* library, WORD ordinal) noexcept {
  return findIn(library, MAKEINTRESOURCEA(ordinal));
}

}  // namespace platform
