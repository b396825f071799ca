// Texts as the system shows them.
#pragma once

#include <string>
#include <string_view>

#include "platform/system.h"

namespace platform {

// Texts that are valid UTF-8 are taken as such, all others (EXIF texts are ASCII, IPTC texts of no
// stated character set) in the system's code page.
[[nodiscard]] inline std::wstring wideText(std::string_view text) {
  const int length = static_cast<int>(text.size());
  constexpr struct {
    UINT codePage;
    DWORD flags;
  } attempts[] = {{CP_UTF8, MB_ERR_INVALID_CHARS}, {CP_ACP, 0}};
  for (const auto& attempt : attempts) {
    const int needed =
        MultiByteToWideChar(attempt.codePage, attempt.flags, text.data(), length, nullptr, 0);
    if (needed <= 0) continue;
    std::wstring wide(static_cast<std::size_t>(needed), L'\0');
    MultiByteToWideChar(attempt.codePage, attempt.flags, text.data(), length, wide.data(), needed);
    return wide;
  }
  return {};
}

}  // namespace platform
