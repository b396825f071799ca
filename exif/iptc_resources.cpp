#include "exif/iptc_resources.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <vector>

#include "exif/iptc_datasets.h"

namespace exif {
namespace {

using host::i64;
using host::u32;
using host::u8;

constexpr u8 blockSignature[] = {'8', 'B', 'I', 'M'};
constexpr u32 resourceIptc = 1028;
constexpr i64 portion = 64 << 10;  // data is read in portions: its size word may say anything

// The words of a block's head. A stream that ends leaves them as they were.
struct BlockHead {
  u8 signature[4] = {};
  u8 id[2] = {};
  u8 nameLength = 0;
  u8 name[255] = {};
  u8 size[4] = {};

  [[nodiscard]] bool isBlock() const noexcept {
    return std::memcmp(signature, blockSignature, sizeof signature) == 0;
  }
  [[nodiscard]] u32 resourceId() const noexcept { return u32{id[0]} * 256 + id[1]; }
  [[nodiscard]] i64 dataSize() const noexcept {
    return i64{size[0]} << 24 | i64{size[1]} << 16 | i64{size[2]} << 8 | i64{size[3]};
  }
};

// Reads up to size bytes, in portions that take gets; ends with the first short one.
template <typename Take>
void readPortions(const StreamReader& reader, i64 size, Take take) {
  u8 buffer[portion];
  while (size > 0) {
    const i64 wanted = std::min(size, portion);
    const i64 delivered = std::clamp<i64>(reader.read(buffer, wanted), 0, wanted);
    take(std::span<const u8>(buffer, static_cast<std::size_t>(delivered)));
    if (delivered < wanted) return;
    size -= delivered;
  }
}

void passData(const StreamReader& reader, i64 size) noexcept {
  readPortions(reader, size, [](std::span<const u8>) noexcept {});
}

void decodeData(const StreamReader& reader, i64 size, HGLOBAL* slot) noexcept try {
  std::vector<u8> data;
  readPortions(reader, size, [&](std::span<const u8> bytes) {
    data.insert(data.end(), bytes.begin(), bytes.end());
  });
  ValueBudget budget;
  decodeDatasets(data, slot, budget);
} catch (const std::bad_alloc&) {
  return;  // as a resource without datasets
}

// A name and its length byte together fill an even number of bytes. Returns the bytes passed.
i64 passName(const StreamReader& reader, BlockHead& head) noexcept {
  const i64 length = head.nameLength;
  if (length > 0) reader.read(head.name, length);
  if (length % 2 != 0) return length;
  reader.skipByte();
  return length + 1;
}

}  // namespace

bool walkResources(const StreamReader& reader, i64 budget, HGLOBAL* slot) noexcept {
  BlockHead head;
  while (budget >= 0) {
    reader.read(head.signature, sizeof head.signature);
    budget -= static_cast<i64>(sizeof head.signature);
    if (!head.isBlock()) continue;
    reader.read(head.id, sizeof head.id);
    reader.read(&head.nameLength, sizeof head.nameLength);
    budget -= static_cast<i64>(sizeof head.id + sizeof head.nameLength);
    budget -= passName(reader, head);
    reader.read(head.size, sizeof head.size);
    if (head.resourceId() == resourceIptc) {
      decodeData(reader, head.dataSize(), slot);
      return true;
    }
    passData(reader, head.dataSize());
    budget -= head.dataSize() + static_cast<i64>(sizeof head.size);
    if (head.dataSize() % 2 == 0) continue;
    reader.skipByte();
    --budget;
  }
  return false;
}

}  // namespace exif
