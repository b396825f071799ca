#include "fiohost/mpo_edit/mpf_block.h"

#include <algorithm>

#include "exif/directory_entry.h"
#include "platform/byte_writer.h"

namespace fiohost {
namespace {

using mpo::MpfValue;
using platform::ByteOrder;
using platform::ByteReader;
using platform::ByteWriter;
using std::uint16_t;
using std::uint32_t;
using std::uint64_t;
using std::uint8_t;

constexpr uint64_t countSize = 2;
constexpr uint64_t valueWord = 8;  // in a directory entry
constexpr uint32_t inlineSize = 4;
constexpr uint16_t tiffMagic = 42;
constexpr uint64_t firstDirectoryWord = 4;

const mpo::MpfTag& rowOf(MpfValue value) {
  const auto rows = mpo::mpfTags();
  return *std::find_if(rows.begin(), rows.end(),
                       [value](const mpo::MpfTag& row) { return row.value == value; });
}

// What TIFF 6.0 does not know has its bytes in the value word, as far as anybody can tell.
uint64_t sizeOf(uint16_t type, uint32_t count) { return uint64_t{exif::elementSize(type)} * count; }

class Parser {
 public:
  Parser(ByteReader reader, MpfBlock& block) : reader_(reader), block_(block) {}

  void parse() {
    const auto first = reader_.u32(firstDirectoryWord);
    uint64_t next = first.value_or(0);
    if (!first) block_.whole = false;
    // The standard has an index and an attribute directory; more would be read over each other.
    for (int count = 0; next != 0 && count < 2; ++count) next = takeDirectory(next);
  }

 private:
  // Answers the next directory's place, 0 for none.
  uint64_t takeDirectory(uint64_t place) {
    const uint16_t count = reader_.u16(place).value_or(0);
    const uint64_t entries = place + countSize;
    if (count == 0 || !reader_.contains(entries, uint64_t{count} * mpo::mpfIfdEntrySize)) {
      block_.whole = false;
      return 0;
    }
    MpfDirectory directory;
    for (uint64_t i = 0; i < count; ++i) takeEntry(entries + i * mpo::mpfIfdEntrySize, directory);
    keep(std::move(directory));
    return reader_.u32(entries + uint64_t{count} * mpo::mpfIfdEntrySize).value_or(0);
  }

  void takeEntry(uint64_t at, MpfDirectory& directory) {
    MpfEntry entry = {*reader_.u16(at), *reader_.u16(at + 2), *reader_.u32(at + 4), {}, 0};
    const uint64_t size = sizeOf(entry.type, entry.count);
    entry.place = size <= inlineSize ? at + valueWord : *reader_.u32(at + valueWord);
    const auto value = reader_.bytes(entry.place, std::max<uint64_t>(size, inlineSize));
    if (!value) {
      block_.whole = false;
      return;
    }
    entry.value.assign(value->begin(), value->end());
    directory.entries.push_back(std::move(entry));
  }

  void keep(MpfDirectory directory) {
    const bool index = directory.find(MpfValue::imageCount) != nullptr ||
                       directory.find(MpfValue::entryTable) != nullptr;
    std::optional<MpfDirectory>& place = index ? block_.index : block_.attributes;
    if (!place) place = std::move(directory);
  }

  ByteReader reader_;
  MpfBlock& block_;
};

void writeDirectory(ByteWriter& writer, const MpfDirectory& directory, bool last) {
  const std::size_t start = writer.size() - mpo::mpfSignatureSize;
  std::size_t place =
      start + countSize + directory.entries.size() * mpo::mpfIfdEntrySize + inlineSize;
  writer.u16(static_cast<uint16_t>(directory.entries.size()));
  for (const MpfEntry& entry : directory.entries) {
    writer.u16(entry.tag);
    writer.u16(entry.type);
    writer.u32(entry.count);
    if (entry.value.size() <= inlineSize) {
      writer.bytes(entry.value);
    } else {
      writer.u32(static_cast<uint32_t>(place));
      place += entry.value.size() + entry.value.size() % 2;
    }
  }
  writer.u32(last ? 0 : static_cast<uint32_t>(place));
  for (const MpfEntry& entry : directory.entries) {
    if (entry.value.size() <= inlineSize) continue;
    writer.bytes(entry.value);
    writer.zeros(entry.value.size() % 2);  // TIFF 6.0 has values at even places
  }
}

void write(ByteWriter& writer, const MpfBlock& block) {
  writer.bytes(mpo::mpfSignature);
  writer.text(block.order == ByteOrder::little ? "II" : "MM");
  writer.u16(tiffMagic);
  writer.u32(mpo::mpfHeaderSize);
  if (block.index) writeDirectory(writer, *block.index, !block.attributes);
  if (block.attributes) {
    writeDirectory(writer, *block.attributes, true);
  } else {
    writer.zeros(2);  // to some readers a table that ends with the segment runs past it
  }
}

MpfEntry newEntry(MpfValue value, uint32_t count, std::size_t size) {
  const mpo::MpfTag& row = rowOf(value);
  return {row.tag, row.type, count, ByteBlock(size), 0};
}

// What is turned as one; rationals are two numbers.
std::size_t turnedSize(const MpfEntry& entry) {
  const uint32_t size = exif::elementSize(entry.type);
  const bool rational = entry.type == exif::typeRational || entry.type == exif::typeSRational;
  return rational ? size / 2 : size;
}

bool isImageTable(const MpfEntry& entry) { return entry.tag == rowOf(MpfValue::entryTable).tag; }

void turnEntry(MpfEntry& entry, ByteOrder from, ByteOrder to) {
  if (isImageTable(entry)) {
    MpfBlock block;
    block.order = from;
    entry = mpTableEntry(mpImagesOf(block, entry), to);
    return;
  }
  const std::size_t size = turnedSize(entry);
  if (size < 2) return;
  for (std::size_t at = 0; at + size <= entry.value.size(); at += size) {
    const auto first = entry.value.begin() + static_cast<std::ptrdiff_t>(at);
    std::reverse(first, first + static_cast<std::ptrdiff_t>(size));
  }
}

}  // namespace

MpfEntry* MpfDirectory::find(MpfValue value) {
  const auto found = std::find_if(entries.begin(), entries.end(), [value](const MpfEntry& entry) {
    const mpo::MpfTag* row = mpo::findMpfTag(entry.tag);
    return row != nullptr && row->value == value;
  });
  return found != entries.end() ? &*found : nullptr;
}

const MpfEntry* MpfDirectory::find(MpfValue value) const {
  return const_cast<MpfDirectory*>(this)->find(value);
}

const StreamSegment* mpfSegmentOf(ByteView bytes, const JpegStream& stream) {
  const std::string_view signature(reinterpret_cast<const char*>(mpo::mpfSignature),
                                   mpo::mpfSignatureSize);
  for (const StreamSegment& segment : stream.segments) {
    if (segment.isApp(2) && beginsWith(payloadOf(bytes, segment), signature)) return &segment;
  }
  return nullptr;
}

MpfBlock parseMpf(ByteView payload) {
  MpfBlock block;
  const ByteView bytes = payload.subspan(mpo::mpfSignatureSize);
  const bool little = beginsWith(bytes, "II");
  block.order = little ? ByteOrder::little : ByteOrder::big;
  block.whole = little || beginsWith(bytes, "MM");
  Parser(ByteReader(bytes, block.order), block).parse();
  return block;
}

ByteBlock buildMpf(const MpfBlock& block) {
  ByteWriter counter({}, block.order);
  write(counter, block);
  ByteBlock payload(counter.size());
  ByteWriter writer(payload, block.order);
  write(writer, block);
  return payload;
}

uint32_t mpfNumber(const MpfBlock& block, const MpfEntry& entry) {
  return ByteReader(entry.value, block.order).u32(0).value_or(0);
}

MpfEntry mpfNumberEntry(MpfValue value, uint32_t number, ByteOrder order) {
  MpfEntry entry = newEntry(value, 1, inlineSize);
  ByteWriter(entry.value, order).u32(number);
  return entry;
}

MpfEntry mpfVersionEntry() {
  MpfEntry entry = newEntry(MpfValue::version, inlineSize, inlineSize);
  ByteWriter(entry.value, ByteOrder::big).text("0100");
  return entry;
}

std::vector<MpImage> mpImagesOf(const MpfBlock& block, const MpfEntry& table) {
  const ByteReader reader(table.value, block.order);
  std::vector<MpImage> images;
  for (uint64_t at = 0; reader.contains(at, mpo::mpfImageEntrySize); at += mpo::mpfImageEntrySize) {
    images.push_back({*reader.u32(at),
                      *reader.u32(at + 4),
                      *reader.u32(at + 8),
                      {*reader.u16(at + 12), *reader.u16(at + 14)}});
  }
  return images;
}

MpfEntry mpTableEntry(const std::vector<MpImage>& images, ByteOrder order) {
  const std::size_t size = images.size() * mpo::mpfImageEntrySize;
  MpfEntry entry = newEntry(MpfValue::entryTable, static_cast<uint32_t>(size), size);
  ByteWriter writer(entry.value, order);
  for (const MpImage& image : images) {
    writer.u32(image.attribute);
    writer.u32(image.size);
    writer.u32(image.offset);
    for (const uint16_t dependent : image.dependents) writer.u16(dependent);
  }
  return entry;
}

MpfDirectory inOrder(MpfDirectory directory, ByteOrder from, ByteOrder to) {
  if (from == to) return directory;
  for (MpfEntry& entry : directory.entries) turnEntry(entry, from, to);
  return directory;
}

}  // namespace fiohost
