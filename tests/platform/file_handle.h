// Owners for the tests' own handles, and short forms of opening.
#pragma once

#include <memory>
#include <string>

#include "platform/system.h"

struct CloseHandleLater {
  void operator()(void* handle) const {
    if (handle != nullptr && handle != INVALID_HANDLE_VALUE) CloseHandle(handle);
  }
};
using OwnedHandle = std::unique_ptr<void, CloseHandleLater>;

// INVALID_HANDLE_VALUE or null, whichever the system answered, is no handle.
inline bool isOpen(const OwnedHandle& handle) {
  return handle.get() != nullptr && handle.get() != INVALID_HANDLE_VALUE;
}

inline OwnedHandle openFile(const std::string& path, DWORD access, DWORD disposition,
                            DWORD share = FILE_SHARE_READ) {
  return OwnedHandle(CreateFileA(path.c_str(), access, share, nullptr, disposition,
                                 FILE_ATTRIBUTE_NORMAL, nullptr));
}

inline OwnedHandle openForReading(const std::string& path) {
  return openFile(path, GENERIC_READ, OPEN_EXISTING);
}

// The last error as one type on every system.
inline unsigned lastError() { return static_cast<unsigned>(GetLastError()); }
