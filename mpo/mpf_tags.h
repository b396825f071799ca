// The tags of a multi-picture segment (CIPA DC-007, 5.2.3 and 5.2.4): one table that the parser,
// the size computation and the builder walk.
#pragma once

#include <cstddef>
#include <span>

#include "host/mpo.h"

namespace mpo {

// What a tag's value is, which decides how it is read and written.
enum class MpfValue {
  version,
  imageCount,
  entryTable,
  uidList,
  totalFrames,
  imageNumber,
  number,  // an attribute held in the IFD entry
  ratio,   // an attribute of two words in the value area
};

// The IFDs that a tag is written into: always, or only for images whose description has its flag.
enum class MpfPlace { everyIfd, index, indexWhenFlagged, attributes, attributesWhenFlagged };

enum class MpfIfd { index, attributes };

struct MpfTag {
  host::u16 tag;
  host::u16 type;  // TIFF type as written; never looked at when reading
  MpfValue value;
  std::size_t member;  // of host::MpoAttributes, for attributes
  host::u32 flag;      // presence bit of the descriptions
  host::u32 flagRead;  // presence bit that reading sets
  MpfPlace place;
  host::u16 writtenTag;
};

// In the order in which tags are written.
[[nodiscard]] std::span<const MpfTag> mpfTags() noexcept;

// The row that reads a tag, or null for a tag that is ignored.
[[nodiscard]] const MpfTag* findMpfTag(host::u16 tag) noexcept;

// flags: presence bits of the image that the IFD describes (for the index, of the first image).
[[nodiscard]] bool isWritten(const MpfTag& row, MpfIfd ifd, host::u32 flags) noexcept;

inline constexpr host::u32 mpfUidListFlag = host::presenceUniqueId;

// Sizes of the records in the segment.
inline constexpr host::u32 mpfSignatureSize = 4;    // "MPF" and a NUL
inline constexpr host::u32 mpfHeaderSize = 8;       // byte order, 42, offset of the first IFD
inline constexpr host::u32 mpfIfdEntrySize = 12;    // tag, type, count, value or its offset
inline constexpr host::u32 mpfImageEntrySize = 16;  // one image of the MP Entry table

inline constexpr host::u8 mpfSignature[mpfSignatureSize] = {'M', 'P', 'F', 0};

}  // namespace mpo
