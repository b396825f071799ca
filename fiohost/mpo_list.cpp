#include "fiohost/mpo_list.h"

#include <algorithm>

#include "fiohost/failure.h"

namespace fiohost {
namespace {

bool liesInside(const host::MpoEntry& entry, host::u64 fileSize) {
  return entry.size > 0 && host::u64{entry.fileOffset} + entry.size <= fileSize;
}

}  // namespace

MpoFile describeMpo(const Session& session, const SourceFile& file) {
  MpoFile result = {describeFile(session, file), {}, {}};
  const std::unique_ptr<const host::MpoFileData> mpo = result.described.fileData.mpo();
  if (result.described.family != Family::mpo || mpo == nullptr) {
    throw Failure("this is no multi-picture file",
                  "use \"fiohost info\" for a picture that stands alone");
  }
  result.list = mpo->list;
  const host::u32 count = std::min(mpo->list.imageCount, host::mpoMostImages);
  if (count == 0 || mpo->list.entries == 0) {
    throw Failure("the file lists no images", "read its first one with \"fiohost read\"");
  }
  for (host::u32 i = 0; i < count; ++i) {
    host::MpoEntry entry = mpo->entries[i];
    // The list keeps the first image's figures in its header.
    if (i == 0) entry.image = mpo->list.firstImage;
    result.images.push_back({i + 1, entry, liesInside(entry, file.size())});
  }
  return result;
}

}  // namespace fiohost
