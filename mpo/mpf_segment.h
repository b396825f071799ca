// The multi-picture segment (CIPA DC-007): an APP2 payload of "MPF", a NUL, and a TIFF-like block
// whose offsets count from its byte-order field.
#pragma once

#include "mpo/mpf_tags.h"
#include "platform/byte_reader.h"

namespace mpo {

// An unsigned number in that order, or none when it does not lie inside the bytes whole.
[[nodiscard]] std::optional<host::u16> MpfGet16(platform::ByteOrder order,
                                                std::span<const host::u8> bytes) noexcept;
[[nodiscard]] std::optional<host::u32> MpfGet32(platform::ByteOrder order,
                                                std::span<const host::u8> bytes) noexcept;

// Looks for the segment in the first JPEG stream from the file's current position on. Returns 1,
// with the file and position (from the start of the file) at the byte-order field, or 0 when the
// stream ends first. Either out may be null; both are cleared first.
int MpfFindSegment(HANDLE file, host::u64* position = nullptr, bool* found = nullptr) noexcept;

// The header of an image list and the room behind it, which lie together in a file-data record.
struct MpoIndex {
  host::MpoList& list;
  std::span<host::MpoEntry, host::mpoMostImages> entries;
};

inline constexpr host::u32 mpfParsed = 0;
// An attribute was met while there is no entry to put it into.
inline constexpr host::u32 mpfNoEntry = 0x80004005;

// Reads a segment into the list. segment starts at the byte-order field and ends with the segment.
// imageIndex: position in the array of the image whose segment it is; base: offset of the
// byte-order field in the file, from which the images' offsets count.
// Returns mpfParsed or mpfNoEntry (parsing goes on without that attribute). What does not lie
// inside the segment is passed over.
host::u32 MpfParseSegment(host::u32 imageIndex, const MpoIndex& index,
                          std::span<const host::u8> segment, host::u32 base) noexcept;

// Builds the segment's payload up to the end of the index IFD of counts.imageCount images. Without
// a buffer only the size is returned; with one 1, or 0 when it or images is too small. size may be
// null.
host::u32 MpfBuildIndexIfd(std::span<const host::MpoImageDesc> images,
                           const host::MpoCountAnswer& counts, std::span<host::u8> buffer,
                           host::u32* size) noexcept;

// Builds the whole payload for the image at counts.position, as MpfBuildIndexIfd does: the index
// IFD for the first image only, then the image's attribute IFD.
host::u32 MpfBuildSegment(std::span<const host::MpoImageDesc> images,
                          const host::MpoCountAnswer& counts, std::span<host::u8> buffer,
                          host::u32* size) noexcept;

// Enters the image at position, written from start on with size bytes, into the index of the file's
// first image. file is open for reading and writing. 1, or 0 when the file holds no index with an
// entry for it. The file position is restored.
int MpfPatchEntry(HANDLE file, host::u32 imageCount, host::u32 position, host::u64 start,
                  host::u32 size) noexcept;

}  // namespace mpo
