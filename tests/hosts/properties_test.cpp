// Property records that lie: counts, sizes, kinds, blocks that are missing or too small. They are
// taken as far as they really reach.
#include "tests/hosts/host.h"

namespace hosts {
namespace {

using host::PropertyField;
using host::PropertyHeader;
using host::u16;
using host::u32;
using host::u64;
using host::u8;

constexpr u32 height = 16;
constexpr u32 width = 24;

void* giveRows(void* context, u64, u32, u32, u32, u32 second, host::i32, host::i32) {
  return second == 0 ? nullptr : context;
}

class Properties : public testing::Test {
 protected:
  Properties() {
    static_cast<void>(session());
    writeFile("in.jpg", support::JpegBuilder().size(width, height).build());
    record_.emplace(fiohost::Family::jpeg, "in.jpg");
    record_->namePath("out.jpg");
  }

  // Every entry that takes the record, one after the other. What is written must stay readable.
  void serve(HGLOBAL properties) {
    record_->setProperties(properties);
    for (const auto ordinal : {host::ordinalSetProperty, host::ordinalMPOSetProperty}) {
      EXPECT_EQ(entry<host::SetPropertyEntry>(ordinal)(record_->handle(), properties), 0);
    }
    HGLOBAL out = nullptr;
    static_cast<void>(
        entry<host::GetPropertyEntry>(host::ordinalGetProperty)(record_->handle(), &out));
    u8 row[width * 4] = {};
    u8* rows[] = {row};
    const int written = session().plugin.write(record_->handle(), rows, &giveRows);
    EXPECT_EQ(written, 1);
    EXPECT_FALSE(support::segmentsOf(readFile("out.jpg")).empty());
    const auto last = support::segmentsOf(readFile("out.jpg")).back();
    EXPECT_EQ(last.marker, 0xDA);
  }

  std::optional<Record> record_;
};

HGLOBAL recordOf(const std::vector<PropertyField>& fields, host::i32 count, u32 size) {
  HGLOBAL handle = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT,
                               sizeof(PropertyHeader) + fields.size() * sizeof(PropertyField));
  const platform::LockedGlobal lock(handle);
  auto* header = lock.as<PropertyHeader>();
  header->recordSize = size;
  header->fieldCount = count;
  std::copy(fields.begin(), fields.end(), reinterpret_cast<PropertyField*>(header + 1));
  return handle;
}

PropertyField field(u16 id, u16 kind, u16 group, u32 size, HGLOBAL block) {
  PropertyField made = {};
  made.descriptorSize = sizeof made;
  made.fieldId = id;
  made.valueKind = kind;
  made.sourceGroup = group;
  made.dataSize = size;
  made.data = reinterpret_cast<u64>(block);
  return made;
}

HGLOBAL blockOf(std::size_t size) {
  HGLOBAL block = GlobalAlloc(GMEM_FIXED | GMEM_ZEROINIT, size);
  std::memset(static_cast<void*>(block), 0xFF, size);
  return block;
}

// The host's own freeing goes by the record's count, which is set right for it.
void release(Record& record, host::i32 count) {
  HGLOBAL properties = record.properties();
  if (properties == nullptr) return;
  const platform::LockedGlobal lock(properties);
  auto* header = lock.as<PropertyHeader>();
  const auto room = (lock.size() - sizeof *header) / sizeof(PropertyField);
  if (header->fieldCount < 0 || static_cast<std::size_t>(header->fieldCount) > room) {
    header->fieldCount = count;
  }
}

TEST_F(Properties, OfEveryCountAndSizeAreTakenAsFarAsTheyReach) {
  const PropertyField plain = field(host::fieldHeader, 0, 0, 0, nullptr);
  for (const host::i32 count :
       {0, 1, 2, 3, 4, 1000, 0x7FFFFFFF, -1, static_cast<int>(0x80000000)}) {
    for (const u32 size : {0U, 1U, 96U, 184U, ~0U}) {
      SCOPED_TRACE("count " + std::to_string(count) + ", size " + std::to_string(size));
      serve(recordOf({plain, plain, plain}, count, size));
      release(*record_, 1);
      session().utilities.freeProperty(record_->properties());
      record_->setProperties(nullptr);
    }
  }
}

// Every kind and id that a reader knows, without a block, with one that is too small for what its
// size word says, and with a size word that is too small for its block.
TEST_F(Properties, OfEveryKindWithEveryBlockAreWrittenReadably) {
  constexpr u16 ids[] = {host::fieldIcc,
                         host::fieldXmp,
                         host::fieldRawSegment,
                         host::fieldFpxr,
                         host::fieldHeap,
                         host::fieldExifFirst,
                         host::fieldExifLast,
                         host::fieldExifSegment,
                         host::fieldGpsFirst,
                         host::fieldGpsLast,
                         host::fieldIptcFirst,
                         host::fieldIptcLast,
                         host::fieldPhotoshop,
                         host::fieldMakerNoteFirst,
                         0,
                         0xFFFF};
  constexpr u16 kinds[] = {0, 1, 2, 3, 4, 5, 6, 15, 16, 17, 0xFFFF};
  const NothingLeft check;
  for (const u16 id : ids) {
    for (const u16 kind : kinds) {
      for (const u16 group : {u16{0}, u16{2}, u16{5}, host::groupRawSegment, u16{0xFFFF}}) {
        for (const std::size_t bytes : {0U, 1U, 3U, 4U, 5U, 60U}) {
          for (const u32 size : {0U, 3U, 5U, 64U, 65537U, 65538U}) {
            const bool owns = kind == host::kindBlock || kind == host::kindText;
            if (!owns && bytes != 0) continue;
            HGLOBAL block = owns && bytes != 0 ? blockOf(bytes) : nullptr;
            SCOPED_TRACE(std::to_string(id) + " " + std::to_string(kind) + " " +
                         std::to_string(group) + " " + std::to_string(bytes) + " " +
                         std::to_string(size));
            serve(recordOf(
                {field(host::fieldHeader, 0, 0, 0, nullptr), field(id, kind, group, size, block)},
                2, 184));
            session().utilities.freeProperty(record_->properties());
            record_->setProperties(nullptr);
            if (HasFailure()) return;
          }
        }
      }
    }
  }
}

}  // namespace
}  // namespace hosts
