// Tags that mean something to the directories themselves (EXIF 2.32; TIFF 6.0).
#pragma once

#include "host/types.h"

namespace exif {

// Entries of the 0th and the Exif IFD that lead to other blocks.
inline constexpr host::u16 tagIptc = 0x83BB;
inline constexpr host::u16 tagPhotoshop = 0x8649;
inline constexpr host::u16 tagExifPointer = 0x8769;
inline constexpr host::u16 tagGpsPointer = 0x8825;
inline constexpr host::u16 tagMakerNote = 0x927C;

// Entries of the 1st IFD, which describes the thumbnail.
inline constexpr host::u16 tagCompression = 0x0103;
inline constexpr host::u16 tagXResolution = 0x011A;
inline constexpr host::u16 tagYResolution = 0x011B;
inline constexpr host::u16 tagResolutionUnit = 0x0128;
inline constexpr host::u16 tagThumbnailOffset = 0x0201;  // JPEGInterchangeFormat
inline constexpr host::u16 tagThumbnailLength = 0x0202;  // JPEGInterchangeFormatLength

}  // namespace exif
