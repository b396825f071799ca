// Where an image's file lies, as its file-data record says.
#pragma once

#include "host/kfioutil.h"

namespace frame {

// Both forms belong to the record (or to the caller who made this); null = none.
struct SourcePath {
  char* ansi = nullptr;
  wchar_t* wide = nullptr;

  [[nodiscard]] bool empty() const noexcept { return ansi == nullptr && wide == nullptr; }
};

[[nodiscard]] inline SourcePath sourcePathOf(HGLOBAL fileData) noexcept {
  SourcePath path;
  gfioGetFileSourcePath(fileData, &path.ansi, &path.wide);
  return path;
}

[[nodiscard]] inline SourcePath sourcePathOfLocked(void* fileData) noexcept {
  SourcePath path;
  gfioGetFileSourcePath_DS(fileData, &path.ansi, &path.wide);
  return path;
}

}  // namespace frame
