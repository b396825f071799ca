// Ten thousand generated heaps: read, edited, written and read again, against edits of the model.
#include <random>
#include <span>

#include "tests/heap/heap_fields.h"
#include "tests/heap/known_items.h"

namespace {

using namespace test;

constexpr unsigned seed = 20260401;
constexpr int heapCount = 10000;

class Generator {
 public:
  unsigned below(unsigned limit) {
    return static_cast<unsigned>(std::uniform_int_distribution<unsigned>(0, limit - 1)(random_));
  }
  Bytes bytes(std::size_t count) {
    Bytes result(count);
    for (auto& byte : result) byte = static_cast<std::uint8_t>(below(256));
    return result;
  }
  std::string text(std::size_t most) {
    std::string result(below(static_cast<unsigned>(most) + 1), ' ');
    for (char& character : result) character = static_cast<char>('!' + below(90));
    return result;
  }

  std::vector<ModelRecord> records(unsigned most, unsigned depth) {
    std::vector<ModelRecord> result(below(most + 1));
    for (ModelRecord& entry : result) entry = record(depth);
    return result;
  }

 private:
  std::uint16_t tag() {
    static constexpr std::uint16_t subHeaps[] = {0x3002, 0x3003, 0x3004, 0x2807, 0x2899};
    if (below(4) == 0) return subHeaps[below(5)];
    auto known = knownRecords[below(static_cast<unsigned>(knownRecords.size()))].tag;
    if (below(4) == 0) known = static_cast<std::uint16_t>(below(0x10000));
    return known;
  }
  ModelRecord record(unsigned depth) {
    ModelRecord result = {tag()};
    while (result.isSubHeap() && depth == 0) result.tag = tag();
    if (result.isSubHeap()) {
      result.children = records(4, depth - 1);
    } else if (result.liesInEntry()) {
      result.value = bytes(8);
    } else {
      result.value = bytes(2 * below(20));
      for (auto& byte : result.value) byte = below(5) == 0 ? std::uint8_t{0} : byte;
    }
    return result;
  }

  std::mt19937 random_{seed};
};

struct Edit {
  const KnownRecord* known;
  host::u16 item;
  host::u16 kind;
  host::u32 number;
  std::string text;

  [[nodiscard]] host::u16 fieldId() const {
    return static_cast<host::u16>(2201 + known->base + item);
  }
};

Edit randomEdit(Generator& random) {
  static constexpr host::u16 kinds[] = {1, 1, 2, 3, 4, 15, 16};
  const KnownRecord& known = knownRecords[random.below(static_cast<unsigned>(knownRecords.size()))];
  const auto item = random.below(static_cast<unsigned>(known.formats.size()));
  Edit edit = {&known, static_cast<host::u16>(item), kinds[random.below(7)], 0, {}};
  edit.number = random.below(0xFFFFFFFF);
  edit.text = random.text(12);
  return edit;
}

// The first record with that id, from the outside in; a sub-heap must be one.
ModelRecord* find(std::vector<ModelRecord>& records, std::uint16_t tag) {
  for (ModelRecord& record : records) {
    const unsigned type = tag & 0x3800;
    const bool wantsBlock = type == 0x2800 || type == 0x3000;
    if ((record.tag & 0x3FFF) == (tag & 0x3FFF) && record.isSubHeap() == wantsBlock) return &record;
    if (ModelRecord* inside = find(record.children, tag)) return inside;
  }
  return nullptr;
}

// The block in which a record of the known kind is made: that of its innermost parent, which may
// lie anywhere and is made in its turn.
std::vector<ModelRecord>& blockFor(ModelHeap& heap, std::span<const std::uint16_t> parents) {
  if (parents.empty()) return heap.records;
  if (ModelRecord* parent = find(heap.records, parents.back())) return parent->children;
  std::vector<ModelRecord>& outer = blockFor(heap, parents.first(parents.size() - 1));
  return outer.emplace_back(ModelRecord{parents.back()}).children;
}

ModelRecord& findOrMake(ModelHeap& heap, const KnownRecord& known) {
  if (ModelRecord* found = find(heap.records, known.tag)) return *found;
  const unsigned type = known.tag & 0x3800;
  std::size_t size = (type == 0x1000 ? 2 : 4) * known.formats.size();
  if (type == 0x0800) size = 2;
  if ((known.tag & 0xC000) != 0) size = 8;
  return blockFor(heap, known.parents).emplace_back(ModelRecord{known.tag, Bytes(size)});
}

void editText(ModelRecord& record, unsigned number, const std::string& text) {
  if (record.liesInEntry()) {
    record.value = bytesOf(text);
    record.value.resize(8);
    return;
  }
  std::size_t start = 0;
  for (; number > 0; --number) {
    while (start < record.value.size() && record.value[start] != 0) ++start;
    ++start;
  }
  if (start >= record.value.size()) return;
  std::size_t end = start;
  while (end < record.value.size() && record.value[end] != 0) ++end;
  Bytes replacement = bytesOf(text);
  if (end - start != text.size()) {
    replacement.push_back(0);
    if (end < record.value.size()) ++end;
  }
  Bytes value(record.value.begin(), record.value.begin() + static_cast<std::ptrdiff_t>(start));
  value = support::joined(value, replacement);
  value.insert(value.end(), record.value.begin() + static_cast<std::ptrdiff_t>(end),
               record.value.end());
  record.value = value;
}

void apply(ModelHeap& heap, const Edit& edit) {
  ModelRecord& record = findOrMake(heap, *edit.known);
  if (edit.kind == 1) return editText(record, edit.item, edit.text);
  const std::size_t width = edit.kind >= 15 ? 2 : 4;
  const std::size_t offset = edit.item * width;
  if (offset + width > record.value.size()) return;
  for (std::size_t i = 0; i < width; ++i) {
    record.value[offset + i] = static_cast<std::uint8_t>(edit.number >> (8 * i));
  }
}

class GeneratedHeaps : public HeapTest {};

TEST_F(GeneratedHeaps, TakeEditsLikeTheModel) {
  Generator random;
  int changed = 0;
  for (int number = 0; number < heapCount; ++number) {
    SCOPED_TRACE(testing::Message() << "heap " << number << " of seed " << seed);
    ModelHeap model = {random.below(2) == 1, random.records(8, 3)};
    const Bytes heap = model.build();
    const auto read = parsed(heap);
    ASSERT_TRUE(read.has_value());
    ASSERT_EQ(read->records, model.records);
    ASSERT_EQ(rewritten(heap), heap);

    PropertyHolder property;
    random.below(2) == 1 ? property.addHeap(heap) : property.addSegment(heap);
    const unsigned edits = random.below(6);
    for (unsigned i = 0; i < edits; ++i) {
      const Edit edit = randomEdit(random);
      edit.kind == 1 ? property.addText(edit.fieldId(), edit.text)
                     : property.addNumber(edit.fieldId(), edit.kind, edit.number);
      apply(model, edit);
    }
    ASSERT_TRUE(writeBack(property));
    ASSERT_EQ(property.heap(), model.build());
    ASSERT_EQ(rewritten(property.heap()), property.heap());
    if (property.heap() != heap) ++changed;
  }
  EXPECT_GT(changed, heapCount / 2);
}

// Bytes at random places: nothing outside the payload is touched, whatever comes of it.
TEST_F(GeneratedHeaps, SurviveDamage) {
  Generator random;
  int readable = 0;
  for (int number = 0; number < heapCount; ++number) {
    Bytes heap = ModelHeap{random.below(2) == 1, random.records(8, 3)}.build();
    for (unsigned hit = 0; hit <= random.below(4); ++hit) {
      heap[random.below(static_cast<unsigned>(heap.size()))] =
          static_cast<std::uint8_t>(random.below(256));
    }
    if (random.below(4) == 0) heap.resize(random.below(static_cast<unsigned>(heap.size()) + 1));
    PropertyHolder property;
    const bool expanded = property.expand(heap) == 1;
    EXPECT_EQ(expanded, parsed(heap).has_value());
    if (!expanded) continue;
    ++readable;
    for (const HeldField& field : property.fields()) {
      if (field.id > 5000 && field.kind == host::kindText) property.setText(field.id, "edited");
    }
    if (writeBack(property)) {
      EXPECT_TRUE(parsed(property.heap()).has_value()) << number;
    }
  }
  EXPECT_GT(readable, heapCount / 10);
}

}  // namespace
