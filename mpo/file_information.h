// Describing a multi-picture file: every image's place and figures, without decoding any.
#pragma once

#include "host/mpo.h"

namespace mpo {

struct DescribeSource {
  HANDLE file = nullptr;           // null: the file is opened by name
  const char* ansiPath = nullptr;  // comes first when a file is opened
  const wchar_t* widePath = nullptr;
};

// A new file-data record that the caller owns. Null when the file cannot be opened or holds no
// multi-picture segment, and after a reported failure.
[[nodiscard]] HGLOBAL describeFile(const DescribeSource& source) noexcept;

// Marks the image as its own preview when it is small, or large but described for a known host.
void markOwnPreview(host::FileDataRecord& record, bool knownHost) noexcept;

}  // namespace mpo
