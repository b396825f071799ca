// One field as a directory entry: type, count, and where the value goes.
#include "exif/entry_writer.h"

#include "tests/exif/built_segment.h"

namespace {

using namespace test;

class EntryWriter : public testing::Test {
 protected:
  static constexpr std::size_t directories = 40;

  host::PropertyField field(u16 kind, const Bytes& block, u32 dataSize) {
    slot_.add({}, block);
    host::PropertyField field = {};
    field.valueKind = kind;
    field.dataSize = dataSize;
    platform::LockedGlobal lock(slot_.handle());
    const auto* first = reinterpret_cast<host::PropertyField*>(lock.as<host::PropertyHeader>() + 1);
    blocks_.push_back(first[lock.as<host::PropertyHeader>()->fieldCount - 1].data);
    field.data = blocks_.back();
    return field;
  }
  host::PropertyField text(std::string_view value) {
    return field(host::kindText, support::bytesOf(value), static_cast<u32>(value.size()));
  }
  host::PropertyField block(const Bytes& value) {
    const auto length = static_cast<host::u8>(value.size());
    return field(host::kindBlock, support::joined({length, 0, 0, 0}, value), length + 4u);
  }
  static host::PropertyField number(u16 kind, u64 value, u32 dataSize = 0) {
    host::PropertyField field = {};
    field.valueKind = kind;
    field.dataSize = dataSize;
    field.data = value;
    return field;
  }
  ~EntryWriter() override {
    for (const u64 memory : blocks_) {
      if (memory != 0) GlobalFree(reinterpret_cast<HGLOBAL>(memory));
    }
  }

  // The entry and the value bytes of a field.
  struct Written {
    bool entry;
    WrittenEntry words;
    std::string value;
  };
  Written write(u16 type, const host::PropertyField& field) {
    Bytes tiff(100, 0);
    exif::TiffWriter out(tiff, directories);
    Written written = {};
    written.entry = exif::writeFieldEntry(out, 0x1234, type, field);
    const platform::ByteReader reader(tiff, platform::ByteOrder::little);
    written.words = {*reader.u16(0), *reader.u16(2), *reader.u32(4), *reader.u32(8)};
    written.value.assign(
        tiff.begin() + directories,
        tiff.begin() + directories + static_cast<std::ptrdiff_t>(out.values.size()));
    EXPECT_EQ(out.directories.size(), written.entry ? 12u : 0u);
    return written;
  }

 private:
  PropertySlot slot_;
  std::vector<u64> blocks_;
};

TEST_F(EntryWriter, TheCountIsTheSizeInElementsOfTheType) {
  const u32 sizes[] = {0, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8};
  for (u16 type = 1; type <= 12; ++type) {
    const Written written = write(type, block(Bytes(24, 'v')));
    EXPECT_TRUE(written.entry);
    EXPECT_EQ(written.words, (WrittenEntry{0x1234, type, 24 / sizes[type], directories})) << type;
    EXPECT_EQ(written.value, std::string(24, 'v'));
  }
}

TEST_F(EntryWriter, FourBytesLieInTheEntryAndFiveBehindTheDirectories) {
  EXPECT_EQ(write(2, text("abcd")).words, (WrittenEntry{0x1234, 2, 4, 0x64636261}));
  EXPECT_EQ(write(2, text("abcd")).value, "");
  EXPECT_EQ(write(2, text("abcde")).words, (WrittenEntry{0x1234, 2, 5, directories}));
  EXPECT_EQ(write(2, text("abcde")).value, "abcde");
  EXPECT_EQ(write(7, block({'a', 'b', 'c', 'd'})).words, (WrittenEntry{0x1234, 7, 4, 0x64636261}));
  EXPECT_EQ(write(7, block({'a', 'b', 'c', 'd', 'e'})).value, "abcde");
  EXPECT_EQ(write(3, block({1, 2, 3, 4})).words, (WrittenEntry{0x1234, 3, 2, 0x04030201}));
}

TEST_F(EntryWriter, EachValueGoesBehindTheOneBefore) {
  Bytes tiff(100, 0);
  exif::TiffWriter out(tiff, directories);
  EXPECT_TRUE(exif::writeFieldEntry(out, 1, 2, text("abcdef")));
  EXPECT_TRUE(exif::writeFieldEntry(out, 2, 2, text("12")));
  EXPECT_TRUE(exif::writeFieldEntry(out, 3, 2, text("ghijk")));
  const platform::ByteReader reader(tiff, platform::ByteOrder::little);
  EXPECT_EQ(*reader.u32(8), directories);
  EXPECT_EQ(*reader.u32(12 + 8), 0x3231u);
  EXPECT_EQ(*reader.u32(24 + 8), directories + 6);
  EXPECT_EQ(std::string(tiff.begin() + directories, tiff.begin() + directories + 11),
            "abcdefghijk");
}

TEST_F(EntryWriter, NumbersLieInTheFieldItself) {
  constexpr u64 value = 0x1122334455667788;
  const struct {
    u16 kind;
    u32 word;
  } rows[] = {{2, 0x55667788}, {3, 0x55667788}, {4, 0x55667788}, {6, 0x55667788},
              {15, 0x7788},    {16, 0x7788},    {0, 0x55667788}, {99, 0x55667788}};
  for (const auto& row : rows) {
    const Written written = write(4, number(row.kind, value));
    EXPECT_EQ(written.words, (WrittenEntry{0x1234, 4, 1, row.word})) << row.kind;
    EXPECT_EQ(written.value, "");
  }
}

TEST_F(EntryWriter, ANumbersSizeWordCountsElementsAndCopiesNothing) {
  EXPECT_EQ(write(3, number(2, 0x00020001, 4)).words, (WrittenEntry{0x1234, 3, 2, 0x00020001}));
  const Written large = write(4, number(2, 7, 40));
  EXPECT_EQ(large.words, (WrittenEntry{0x1234, 4, 10, 7}));
  EXPECT_EQ(large.value, "");
}

TEST_F(EntryWriter, AnEmptyFieldHasOneElementOfZeros) {
  EXPECT_EQ(write(2, number(host::kindText, 0)).words, (WrittenEntry{0x1234, 2, 1, 0}));
  EXPECT_EQ(write(3, block({})).words, (WrittenEntry{0x1234, 3, 1, 0}));
  EXPECT_EQ(write(5, number(host::kindBlock, 0)).words, (WrittenEntry{0x1234, 5, 1, 0}));
}

TEST_F(EntryWriter, LessThanOneElementIsOneElement) {
  EXPECT_EQ(write(3, block({9})).words, (WrittenEntry{0x1234, 3, 1, 9}));
  EXPECT_EQ(write(5, block({1, 2, 3, 4, 5})).words, (WrittenEntry{0x1234, 5, 1, directories}));
}

TEST_F(EntryWriter, ABlocksSizeIsThatOfItsPrefix) {
  const Bytes bytes = {6, 0, 0, 0, 'a', 'b', 'c', 'd', 'e', 'f', 'g', 'h'};
  const Written written = write(2, field(host::kindBlock, bytes, 12));
  EXPECT_EQ(written.words, (WrittenEntry{0x1234, 2, 6, directories}));
  EXPECT_EQ(written.value, "abcdef");
  const Bytes lying = {200, 0, 0, 0, 'a', 'b', 'c', 'd', 'e', 'f'};
  EXPECT_EQ(write(2, field(host::kindBlock, lying, 10)).value, "abcdef");
  EXPECT_EQ(write(2, field(host::kindBlock, lying, 9)).value, "abcde") << "nor past the size word";
  EXPECT_EQ(write(2, field(host::kindBlock, lying, 3)).words, (WrittenEntry{0x1234, 2, 1, 0}));
}

TEST_F(EntryWriter, TheRowsTypeComesFirstThenTheFields) {
  host::PropertyField field = number(2, 5);
  field.sourceGroup = 3;
  EXPECT_EQ(write(4, field).words.type, 4);
  for (const u16 open : {u16{0}, u16{13}, u16{0xFFFF}}) {
    EXPECT_EQ(write(open, field).words.type, 3) << open;
  }
  for (const u16 unknown : {u16{0}, u16{13}, u16{4701}}) {
    field.sourceGroup = unknown;
    EXPECT_FALSE(write(0, field).entry) << unknown;
  }
}

TEST_F(EntryWriter, ValueBytesLeaveOutThePrefixAndWhatLiesInEntries) {
  const struct {
    u16 kind;
    u32 dataSize;
    u64 bytes;
  } rows[] = {{1, 0, 0}, {1, 4, 0}, {1, 5, 5},  {1, 900, 900}, {5, 0, 0}, {5, 4, 0},
              {5, 8, 0}, {5, 9, 5}, {5, 12, 8}, {2, 0, 0},     {2, 4, 0}, {2, 5, 5}};
  for (const auto& row : rows) {
    EXPECT_EQ(exif::valueBytesOf(number(row.kind, 0, row.dataSize)), row.bytes)
        << row.kind << " " << row.dataSize;
  }
}

TEST_F(EntryWriter, NothingIsWrittenOutsideTheStructure) {
  for (std::size_t size = 0; size <= 60; ++size) {
    Bytes tiff(size, 0);
    exif::TiffWriter out(tiff, directories);
    for (int entry = 0; entry < 5; ++entry) {
      exif::writeFieldEntry(out, 1, 2, text("a longer text than that"));
    }
    EXPECT_EQ(out.directories.size(), 60u);
    EXPECT_EQ(out.valueOffset(), directories + 5 * 23);
  }
}

}  // namespace
