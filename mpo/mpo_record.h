// A file-data record as the MPO family sees it.
#pragma once

#include "mpo/mpf_segment.h"
#include "platform/global_memory.h"

namespace mpo {

inline constexpr host::u32 defaultResolution = 72;  // per unit of the density, where none is known
inline constexpr host::u32 mpoTailKind = 257;
inline constexpr host::u32 mpoRecordKind = 5;

// Locked while this object lives. The host may hand in any record: what is not there reads as
// absent.
class MpoRecord {
 public:
  explicit MpoRecord(HGLOBAL fileData) noexcept : lock_(fileData) {}

  [[nodiscard]] void* address() const noexcept { return lock_.address(); }
  [[nodiscard]] std::size_t size() const noexcept { return lock_.size(); }
  void unlock() noexcept { lock_.unlock(); }

  // Null when the record cannot be locked or is none.
  [[nodiscard]] host::FileDataRecord* common() const noexcept {
    return lock_.as<host::FileDataRecord>();
  }
  // The list header, or null when the record lacks the mark. Its fields up to the segment map's end
  // are there; the entries only when index() is.
  [[nodiscard]] host::MpoList* list() const noexcept;
  // The list with its array, or none when the record is not large enough for one.
  [[nodiscard]] std::optional<MpoIndex> index() const noexcept;

  // 0 without a list.
  [[nodiscard]] host::u32 imageCount() const noexcept;
  // Offset of an image in the file; 0, the first image's, when the array has no such entry.
  [[nodiscard]] host::u64 imageStart(host::u32 position) const noexcept;

 private:
  platform::LockedGlobal lock_;
};

[[nodiscard]] MpoIndex indexOf(host::MpoFileData& data) noexcept;

}  // namespace mpo
