// Which pages a file's property dialog has.
#pragma once

#include <vector>

#include "property/property_record.h"

namespace viewer {

enum class PageKind { general, cameraData, exif, gps, iptc };
inline constexpr std::size_t pageKinds = 5;

struct PageDefinition {
  PageKind kind;
  host::u16 templateId;   // dialog of the resource library
  host::u16 titleString;  // string of the resource library
};

// The general page, then those for which the property record holds something, in this order. Only
// the general page for a file without a property record; none when fileData cannot be locked.
[[nodiscard]] std::vector<PageDefinition> pagesOf(HGLOBAL fileData);

// The optional pages: all but the general one.
[[nodiscard]] std::size_t optionalPageCount(HGLOBAL fileData);

inline constexpr int shownAndChanged = 8;
// What the dialog's caller gets: the frame's result, or that something was changed behind an OK.
[[nodiscard]] constexpr int dialogResult(int frameResult, bool modified) noexcept {
  return frameResult == 1 && modified ? shownAndChanged : frameResult;
}

}  // namespace viewer
