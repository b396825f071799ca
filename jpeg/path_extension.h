// The extension test by which the JPEG family leaves MPO files to the MPO family.
#pragma once

namespace jpeg {

// True when the path's extension (what follows the last dot of its last component) is ".mpo",
// whatever its case.
[[nodiscard]] bool hasMpoExtension(const char* path) noexcept;
[[nodiscard]] bool hasMpoExtension(const wchar_t* path) noexcept;

}  // namespace jpeg
