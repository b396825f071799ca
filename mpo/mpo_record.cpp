#include "mpo/mpo_record.h"

#include "property/segment_map.h"

namespace mpo {

using host::MpoFileData;

MpoIndex indexOf(MpoFileData& data) noexcept { return {data.list, data.entries}; }

host::MpoList* MpoRecord::list() const noexcept {
  if (lock_.address() == nullptr || lock_.size() < property::mpoSegmentMap.recordSize) {
    return nullptr;
  }
  auto* data = static_cast<MpoFileData*>(lock_.address());
  return data->tag == host::mpoTailTag ? &data->list : nullptr;
}

std::optional<MpoIndex> MpoRecord::index() const noexcept {
  auto* data = lock_.as<MpoFileData>();
  if (data == nullptr || data->tag != host::mpoTailTag) return std::nullopt;
  return indexOf(*data);
}

host::u32 MpoRecord::imageCount() const noexcept {
  const host::MpoList* header = list();
  return header != nullptr ? header->imageCount : 0;
}

host::u64 MpoRecord::imageStart(host::u32 position) const noexcept {
  const std::optional<MpoIndex> found = index();
  if (!found || found->list.entries == 0 || position >= found->list.imageCount ||
      position >= found->entries.size()) {
    return 0;
  }
  return found->entries[position].fileOffset;
}

}  // namespace mpo
