#include "exif/entry_store.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <span>

#include "platform/global_memory.h"

namespace exif {
namespace {

using host::i32;
using host::PropertyField;
using host::u16;
using host::u32;
using host::u64;
using host::u8;
using platform::ByteOrder;
using platform::ByteReader;
using platform::OwnedGlobal;
using Bytes = std::span<const u8>;

constexpr u64 inlineBytes = 4;
constexpr u64 textRoom = 2;  // behind a text: zeros, so that it ends even where the file has no NUL

// How a big-endian payload is turned: in words of so many bytes, from so many elements on. Fewer
// elements lay in the entry and are in order already.
struct Turn {
  u16 type;
  u32 wordSize;
  i32 fromCount;
};
constexpr Turn turns[] = {{typeShort, 2, 3},     {typeSShort, 2, 3}, {typeLong, 4, 2},
                          {typeSLong, 4, 2},     {typeFloat, 4, 2},  {typeRational, 4, 0},
                          {typeSRational, 4, 0}, {typeDouble, 8, 2}};

void turnPayload(std::span<u8> payload, const DirectoryEntry& entry) noexcept {
  const auto* turn = std::find_if(std::begin(turns), std::end(turns),
                                  [&](const Turn& row) { return row.type == entry.type; });
  if (turn == std::end(turns) || entry.count < turn->fromCount) return;
  for (std::size_t at = 0; at + turn->wordSize <= payload.size(); at += turn->wordSize) {
    std::reverse(payload.begin() + static_cast<std::ptrdiff_t>(at),
                 payload.begin() + static_cast<std::ptrdiff_t>(at + turn->wordSize));
  }
}

// The value word as it lies in memory.
struct InlineValue {
  u8 bytes[inlineBytes];
  explicit InlineValue(u32 word) noexcept { std::memcpy(bytes, &word, sizeof bytes); }
};

OwnedGlobal copyIntoBlock(Bytes head, Bytes value, u64 spare) noexcept {
  OwnedGlobal block(platform::fixedZeroed,
                    head.size() + value.size() + static_cast<std::size_t>(spare));
  if (!block) return block;
  auto* target = static_cast<u8*>(block.get());
  if (!head.empty()) std::memcpy(target, head.data(), head.size());
  if (!value.empty()) std::memcpy(target + head.size(), value.data(), value.size());
  return block;
}

bool keepBlock(OwnedGlobal block, u64 dataSize, PropertyField& field) noexcept {
  if (!block) return false;
  field.dataSize = static_cast<u32>(dataSize);
  field.data = reinterpret_cast<u64>(block.release());
  return true;
}

// The length is the entry's count, whatever the size of its elements.
bool storeText(const ByteReader& values, const DirectoryEntry& entry, PropertyField& field,
               ValueBudget& budget) noexcept {
  if (entry.count < 0) return false;
  const auto length = static_cast<u64>(entry.count);
  const InlineValue word(entry.valueOrOffset);
  const std::optional<Bytes> value = length <= inlineBytes
                                         ? Bytes(word.bytes).first(static_cast<std::size_t>(length))
                                         : values.bytes(entry.valueOrOffset, length);
  if (!value || !budget.take(length)) return false;
  return keepBlock(copyIntoBlock({}, *value, textRoom), length, field);
}

bool storeNumber(u32 value, PropertyField& field, ValueBudget& budget) noexcept {
  if (!budget.take(0)) return false;
  field.dataSize = 0;
  field.data = value;
  return true;
}

// The bytes in front of a payload.
class Head {
 public:
  Head(BlockHead head, const DirectoryEntry& entry, u32 payloadSize) noexcept {
    if (head == BlockHead::entry) {
      put(&entry.tag, sizeof entry.tag);
      put(&entry.type, sizeof entry.type);
      put(&entry.count, sizeof entry.count);
    }
    put(&payloadSize, sizeof payloadSize);
  }
  [[nodiscard]] Bytes bytes() const noexcept { return Bytes(bytes_).first(size_); }

 private:
  void put(const void* number, std::size_t size) noexcept {
    std::memcpy(bytes_ + size_, number, size);
    size_ += size;
  }
  u8 bytes_[12] = {};
  std::size_t size_ = 0;
};

bool storeBlock(const ByteReader& values, const DirectoryEntry& entry, BlockHead head,
                PropertyField& field, ValueBudget& budget) noexcept {
  if (!isKnownType(entry.type) || entry.count < 0) return false;
  const u64 length = u64{elementSize(entry.type)} * static_cast<u64>(entry.count);
  const InlineValue word(entry.valueOrOffset);
  const std::optional<Bytes> value = length <= inlineBytes
                                         ? Bytes(word.bytes).first(static_cast<std::size_t>(length))
                                         : values.bytes(entry.valueOrOffset, length);
  if (!value || !budget.take(length)) return false;
  const Head front(head, entry, static_cast<u32>(length));
  OwnedGlobal block = copyIntoBlock(front.bytes(), *value, 0);
  if (block && values.order() == ByteOrder::big) {
    turnPayload({static_cast<u8*>(block.get()) + front.bytes().size(), value->size()}, entry);
  }
  return keepBlock(std::move(block), front.bytes().size() + length, field);
}

}  // namespace

bool storeEntry(const ByteReader& values, const DirectoryEntry& entry, BlockHead head,
                PropertyField& field, ValueBudget& budget) noexcept {
  field.sourceGroup = entry.type;
  switch (field.valueKind) {
    case host::kindText:
      return storeText(values, entry, field, budget);
    case host::kindNumber32:
    case host::kindNumber32Other:
      return storeNumber(entry.valueOrOffset, field, budget);
    case host::kindNumber16:
    case host::kindNumber16Unsigned:
      return storeNumber(entry.valueOrOffset & 0xFFFF, field, budget);
    case host::kindBlock:
      return storeBlock(values, entry, head, field, budget);
    default:
      return false;
  }
}

}  // namespace exif
