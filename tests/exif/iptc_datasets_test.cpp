// IPTC datasets: decoding, labels, clipping; and back into a stream.
#include "exif/iptc_datasets.h"

#include "property/property_record.h"
#include "tests/exif/exif_test.h"

namespace {

using namespace test;

Bytes dataset(host::u8 record, host::u8 number, std::string_view text, int claimed = -1) {
  const std::size_t size = claimed >= 0 ? static_cast<std::size_t>(claimed) : text.size();
  return support::joined(
      {0x1C, record, number, static_cast<host::u8>(size >> 8), static_cast<host::u8>(size)},
      support::bytesOf(text));
}

class Datasets : public ReaderTest {
 protected:
  void SetUp() override {
    ReaderTest::SetUp();
    iptc_.set(0, 0, 1, 5600);
    iptc_.set(1, 5, 1, 5601);
    iptc_.set(2, 7, 1, 5602);
    iptc_.set(5, 15, 5, 5622);
    iptc_.set(18, 101, 1, 5618);
  }
  void decode(const Bytes& data) {
    exif::ValueBudget budget;
    exif::decodeDatasets(data, slot_.address(), budget);
  }
  std::vector<std::string> texts() const {
    std::vector<std::string> texts;
    for (const StoredField& field : slot_.fields()) texts.push_back(field.text());
    return texts;
  }
};

TEST_F(Datasets, ADatasetBecomesATextField) {
  decode(dataset(2, 5, "Title"));
  const std::vector<StoredField> fields = slot_.fields();
  ASSERT_EQ(fields.size(), 1u);
  EXPECT_EQ(fields[0].id(), 5601);
  EXPECT_EQ(fields[0].descriptor.valueKind, 1);
  EXPECT_EQ(fields[0].descriptor.sourceGroup, 0);
  EXPECT_EQ(fields[0].name(), "Object name");
  EXPECT_EQ(fields[0].size(), 5u);
  EXPECT_STREQ(reinterpret_cast<const char*>(fields[0].number()), "Title");
  platform::LockedGlobal lock(slot_.handle());
  EXPECT_EQ(lock.as<host::PropertyHeader>()->recordSize, 8u + 88u) << "only the count is raised";
}

TEST_F(Datasets, TheFieldIdIsTheRowsColumnAndTheKindIsText) {
  decode(dataset(2, 15, "C"));
  ASSERT_EQ(slot_.ids(), std::vector{5622});
  EXPECT_EQ(slot_.fields()[0].descriptor.valueKind, 1);
}

TEST_F(Datasets, OtherRecordsUnknownAndEmptyDatasetsGiveNoField) {
  for (const Bytes& data : {dataset(1, 5, "x"), dataset(3, 5, "x"), dataset(2, 6, "x"),
                            support::joined(dataset(2, 5, ""), {0})}) {
    decode(data);
  }
  EXPECT_EQ(slot_.handle(), nullptr);
  EXPECT_TRUE(the().calls.empty());
}

TEST_F(Datasets, SeveralFollowOneAnotherAcrossOtherBytes) {
  Bytes data = {0, 0xFF};
  data = support::joined(data, dataset(2, 5, "one"));
  data = support::joined(data, {0x1B, 0x1B});
  data = support::joined(data, dataset(1, 90, "\x1C\x02\x05"));  // skipped whole
  data = support::joined(data, dataset(2, 5, "two"));
  decode(data);
  EXPECT_EQ(texts(), (std::vector<std::string>{"one", "two"}));
  EXPECT_THAT(the().calls,
              testing::ElementsAre("Prop_ReAllocFieldSpace:1", "Prop_ReAllocFieldSpace:1"));
}

TEST_F(Datasets, OneThatStarts5BytesBeforeTheEndIsIgnoredAnd6AreRead) {
  decode({0x1C, 2, 5, 0, 0});
  decode({0x1C, 2, 5, 0, 1});
  EXPECT_TRUE(texts().empty());
  decode({0x1C, 2, 5, 0, 1, 'a'});
  EXPECT_EQ(texts(), std::vector<std::string>{"a"});
}

TEST_F(Datasets, ALengthPastTheEndIsStoredOneByteShort) {
  decode(dataset(2, 5, "abcdef", 7));
  decode(dataset(2, 5, "abcdef", 0x7FFF));
  decode(dataset(2, 5, "abcdef", 6));
  EXPECT_EQ(texts(), (std::vector<std::string>{"abcde", "abcde", "abcdef"}));
  decode(dataset(2, 5, "a", 2));
  EXPECT_EQ(texts().size(), 3u) << "one byte less than one is none";
}

TEST_F(Datasets, BehindAClippedDatasetTheDecodingGoesOn) {
  // The last byte is left over by the clipping and is no marker.
  Bytes data = dataset(2, 5, "ab", 500);
  data.push_back(0x1C);
  decode(data);
  EXPECT_EQ(texts(), std::vector<std::string>{"ab"});
}

TEST_F(Datasets, AnExtendedLengthIsAPlainNumber) {
  Bytes data = {0x1C, 2, 5, 0x80, 0x04};
  data.resize(5 + 0x8004, 'x');
  decode(data);
  ASSERT_EQ(texts().size(), 1u);
  EXPECT_EQ(texts()[0].size(), 0x8004u);
}

TEST_F(Datasets, LabelsAreThoseOfTheListedDatasets) {
  const struct {
    host::u16 dataset;
    host::u32 id;
  } rows[] = {{0, 2400},   {5, 2401},   {10, 2402},  {15, 2403},  {20, 2404},  {25, 2405},
              {40, 2406},  {55, 2407},  {80, 2408},  {85, 2409},  {90, 2410},  {95, 2411},
              {100, 2412}, {101, 2412}, {103, 2413}, {105, 2414}, {110, 2415}, {115, 2416},
              {116, 2417}, {120, 2418}, {122, 2419}};
  const HMODULE resources = GetModuleHandleA("KFRES.DLL");
  for (const auto& row : rows) {
    iptc_.set(26, row.dataset, 1, 5626);
    PropertySlot fresh;
    exif::ValueBudget budget;
    exif::decodeDatasets(dataset(2, static_cast<host::u8>(row.dataset), "x"), fresh.address(),
                         budget);
    char label[260] = {};
    ASSERT_GT(LoadStringA(resources, row.id, label, 260), 0);
    ASSERT_EQ(fresh.fields().size(), 1u);
    EXPECT_EQ(fresh.fields()[0].name(), label) << row.dataset;
  }
}

TEST_F(Datasets, ADatasetWithoutALabelTakesThePreviousOne) {
  decode(support::joined(dataset(2, 7, "x"),
                         support::joined(dataset(2, 101, "y"), dataset(2, 7, "z"))));
  const std::vector<StoredField> fields = slot_.fields();
  ASSERT_EQ(fields.size(), 3u);
  EXPECT_EQ(fields[0].name(), "");
  EXPECT_EQ(fields[1].name(), "Country");
  EXPECT_EQ(fields[2].name(), "Country");
}

TEST_F(Datasets, ARefusedReservationIsNotCheckedButTheRoomIs) {
  the().refuseReservation = true;
  decode(dataset(2, 5, "x"));
  EXPECT_EQ(slot_.handle(), nullptr);
  the().refuseReservation = false;
  doubles::reserveFields(slot_.address(), 1);
  the().refuseReservation = true;
  decode(support::joined(dataset(2, 5, "x"), dataset(2, 5, "y")));
  EXPECT_EQ(texts(), std::vector<std::string>{"x"});
}

TEST_F(Datasets, EveryPrefixIsReadWithinItsBounds) {
  const Bytes whole = support::joined(dataset(2, 5, "abc"), dataset(2, 101, "defghi"));
  for (std::size_t size = 0; size <= whole.size(); ++size) {
    decode(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)));
  }
  EXPECT_GT(texts().size(), 2u);
}

// Serialising.

class Serialising : public Datasets {
 protected:
  ~Serialising() override {
    for (const host::PropertyField& field : fields_) {
      if (field.valueKind == 1 || field.valueKind == 5) {
        GlobalFree(reinterpret_cast<HGLOBAL>(field.data));
      }
    }
  }
  void add(host::u16 id, host::u16 kind, std::string_view text) {
    host::PropertyField field = {};
    field.descriptorSize = 88;
    field.fieldId = id;
    field.valueKind = kind;
    field.dataSize = static_cast<host::u32>(text.size());
    field.data = 1234;
    if (kind == 1 || kind == 5) {
      void* block = GlobalAlloc(GMEM_FIXED | GMEM_ZEROINIT, text.size() + 1);
      std::memcpy(block, text.data(), text.size());
      field.data = reinterpret_cast<host::u64>(block);
    }
    fields_.push_back(field);
  }
  host::u64 write(std::size_t size) {
    buffer_.assign(size, 0xEE);
    return exif::serialiseDatasets(fields_, buffer_);
  }
  std::vector<host::PropertyField> fields_;
  Bytes buffer_;
};

TEST_F(Serialising, EachFieldIsADatasetInRecordOrder) {
  add(5618, 1, "Norway");
  add(5599, 1, "no");
  add(5627, 1, "no");
  add(5601, 1, "T");
  const Bytes expected = support::joined(dataset(2, 101, "Norway"), dataset(2, 5, "T"));
  EXPECT_EQ(exif::serialisedDatasetsSize(fields_), expected.size());
  EXPECT_EQ(write(expected.size()), expected.size());
  EXPECT_EQ(buffer_, expected);
}

TEST_F(Serialising, NoFieldsOrNoBufferGiveZero) {
  EXPECT_EQ(write(10), 0u);
  add(5601, 1, "T");
  EXPECT_EQ(exif::serialiseDatasets(fields_, {}), 0u);
  EXPECT_EQ(exif::serialiseDatasets({}, buffer_), 0u);
}

TEST_F(Serialising, OnlyTheLowByteOfTheDatasetColumnIsWritten) {
  iptc_.set(1, 0x0305, 1, 5601);
  add(5601, 1, "T");
  EXPECT_EQ(write(6), 6u);
  EXPECT_EQ(buffer_, (Bytes{0x1C, 2, 5, 0, 1, 'T'}));
}

TEST_F(Serialising, AFieldThatIsNoTextResetsTheCountAndTheStart) {
  add(5601, 1, "Title");
  add(5618, 5, "abc");
  const Bytes expected = {0x1C, 2, 0,   0, 0, 'T', 'i', 't', 'l', 'e',  // the head is written over
                          0x1C, 2, 101, 0, 3, 'a', 'b', 'c'};
  EXPECT_EQ(exif::serialisedDatasetsSize(fields_), 5u + 8u);
  EXPECT_EQ(write(18), 5u + 8u);
  EXPECT_EQ(buffer_, expected);
}

TEST_F(Serialising, OnlyTextsAndBlocksHaveBytesToCopy) {
  add(5601, 2, "1234");
  const Bytes expected = {0x1C, 2, 5, 0, 4, 0xEE, 0xEE, 0xEE, 0xEE};
  EXPECT_EQ(write(9), 5u + 9u);
  EXPECT_EQ(buffer_, expected);
}

TEST_F(Serialising, ALengthIsWrittenModulo65536AndAllBytesAreCopied) {
  add(5601, 1, std::string(70000, 'x'));
  EXPECT_EQ(write(70005), 70005u);
  EXPECT_EQ(buffer_[3], (70000 % 65536) >> 8);
  EXPECT_EQ(buffer_[4], (70000 % 65536) & 0xFF);
  EXPECT_EQ(std::count(buffer_.begin(), buffer_.end(), 'x'), 70000);
}

TEST_F(Serialising, NothingIsWrittenPastTheBuffer) {
  add(5601, 1, "Title");
  add(5618, 1, "Norway");
  add(5600, 5, "ab");
  for (std::size_t size = 1; size < 30; ++size) EXPECT_EQ(write(size), 5u + 7u) << size;
}

TEST_F(Serialising, ASizeWordThatLiesCopiesWhatTheBlockHas) {
  add(5601, 1, "abc");
  fields_[0].dataSize = 0xFFFFFFF0;
  EXPECT_EQ(write(64), host::u64{0xFFFFFFF0} + 5);
  EXPECT_EQ(std::string(buffer_.begin() + 5, buffer_.begin() + 8), "abc");
}

}  // namespace
