// Describing a JPEG file without decoding it.
#pragma once

#include "frame/error_report.h"
#include "host/file_data.h"
#include "host/klibjpg.h"

namespace jpeg {

// A new file-data record that the caller owns; all ones when the file is an MPO by its name or the
// codec cannot describe it (reported); null after another reported failure.
[[nodiscard]] HGLOBAL describeFile(const char* path) noexcept;
[[nodiscard]] HGLOBAL describeFile(const wchar_t* path) noexcept;

// host::ColourType of an image with that many components; colourUnserved for all but 1, 3 and 4.
[[nodiscard]] host::u32 colourTypeOf(host::u32 components) noexcept;

// Bits of a pixel: eight for each component, cut to 32 bits.
[[nodiscard]] host::u32 bitsPerPixelOf(host::u32 components) noexcept;

// Fills the preview fields with the figures of the file's EXIF thumbnail. False, with nothing
// written, when there is none or the codec cannot describe it.
bool describeExifThumbnail(host::FileDataRecord& record, const char* path) noexcept;
bool describeExifThumbnail(host::FileDataRecord& record, const wchar_t* path) noexcept;

}  // namespace jpeg
