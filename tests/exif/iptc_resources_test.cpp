// The walk through Photoshop image resources.
#include "exif/iptc_resources.h"

#include "property/memory_stream.h"
#include "tests/exif/exif_test.h"

namespace {

using namespace test;

constexpr host::u16 iptcResource = 1028;

// A block as it shall lie in the file; claimed: the data size word, where it lies.
Bytes block(host::u16 id, const std::string& name, const Bytes& data,
            std::optional<host::u32> claimed = {}) {
  Bytes bytes = support::bytesOf("8BIM");
  bytes.push_back(static_cast<host::u8>(id >> 8));
  bytes.push_back(static_cast<host::u8>(id));
  bytes.push_back(static_cast<host::u8>(name.size()));
  bytes = support::joined(bytes, support::bytesOf(name));
  if (name.size() % 2 == 0) bytes.push_back(0);
  const host::u64 size = claimed.value_or(static_cast<host::u32>(data.size()));
  bytes = support::joined(bytes, bytesOfNumbers(FileOrder::big, 4, {size}));
  bytes = support::joined(bytes, data);
  if (data.size() % 2 != 0) bytes.push_back(0);
  return bytes;
}

Bytes dataset(const std::string& text) {
  return support::joined({0x1C, 2, 5, 0, static_cast<host::u8>(text.size())},
                         support::bytesOf(text));
}

class Resources : public ReaderTest {
 protected:
  void SetUp() override {
    ReaderTest::SetUp();
    iptc_.set(1, 5, 1, 5601);
  }
  bool walk(Bytes bytes) { return walk(bytes, static_cast<host::i64>(bytes.size())); }
  bool walk(Bytes bytes, host::i64 budget) {
    stream_ = {bytes.size(), bytes.data(), 0};
    return exif::walkResources({&stream_, &property::memoryStreamCallback}, budget,
                               slot_.address());
  }
  std::vector<std::string> texts() const {
    std::vector<std::string> texts;
    for (const StoredField& field : slot_.fields()) texts.push_back(field.text());
    return texts;
  }
  property::MemoryStream stream_ = {};
};

TEST_F(Resources, TheFirstIptcResourceIsDecodedAndNoOther) {
  const Bytes bytes = support::joined(block(iptcResource, "", dataset("first")),
                                      block(iptcResource, "", dataset("second")));
  EXPECT_TRUE(walk(bytes));
  EXPECT_EQ(texts(), std::vector<std::string>{"first"});
}

TEST_F(Resources, NamesArePaddedToAnEvenLengthWithTheirLengthByte) {
  for (const std::string name : {"", "a", "ab", "abc", "a name of even len"}) {
    PropertySlot fresh;
    Bytes bytes =
        support::joined(block(1000, name, {1, 2}), block(iptcResource, name, dataset("x")));
    property::MemoryStream stream{bytes.size(), bytes.data(), 0};
    EXPECT_TRUE(exif::walkResources({&stream, &property::memoryStreamCallback},
                                    static_cast<host::i64>(bytes.size()), fresh.address()))
        << name;
    EXPECT_EQ(fresh.ids(), std::vector{5601}) << name;
  }
}

TEST_F(Resources, DataOfAnOddSizeIsPadded) {
  for (const Bytes& data : {Bytes{}, Bytes{1}, Bytes{1, 2}, Bytes(70001)}) {
    PropertySlot fresh;
    Bytes bytes = support::joined(block(1000, "", data), block(iptcResource, "", dataset("x")));
    property::MemoryStream stream{bytes.size(), bytes.data(), 0};
    EXPECT_TRUE(exif::walkResources({&stream, &property::memoryStreamCallback},
                                    static_cast<host::i64>(bytes.size()), fresh.address()));
    EXPECT_EQ(fresh.ids(), std::vector{5601}) << data.size();
  }
}

TEST_F(Resources, AnotherSignatureMovesTheWalkOnByFour) {
  EXPECT_TRUE(
      walk(support::joined(support::bytesOf("????8BIX"), block(iptcResource, "", dataset("x")))));
  EXPECT_EQ(texts(), std::vector<std::string>{"x"});
  EXPECT_FALSE(walk(support::joined(support::bytesOf("?"), block(iptcResource, "", dataset("x")))));
}

TEST_F(Resources, TheBudgetEndsTheWalk) {
  const Bytes first = block(1000, "", {1, 2});
  const Bytes bytes = support::joined(first, block(iptcResource, "", dataset("x")));
  EXPECT_FALSE(walk(bytes, -1));
  EXPECT_EQ(stream_.position, 0u) << "a negative budget reads nothing";
  EXPECT_FALSE(walk(bytes, static_cast<host::i64>(first.size()) - 1));
  EXPECT_EQ(stream_.position, first.size());
  EXPECT_TRUE(walk(bytes, static_cast<host::i64>(first.size()))) << "0 is not negative";
}

TEST_F(Resources, EveryPartOfABlockIsChargedToTheBudget) {
  // Each block costs its own bytes: after them the walk goes on with a budget of 0 and not below.
  for (const std::string name : {"", "a", "ab"}) {
    for (const Bytes& data : {Bytes{}, Bytes{1}, Bytes{1, 2}}) {
      const Bytes first = block(1000, name, data);
      const Bytes bytes = support::joined(first, block(iptcResource, "", dataset("x")));
      EXPECT_TRUE(walk(bytes, static_cast<host::i64>(first.size()))) << name << data.size();
      EXPECT_FALSE(walk(bytes, static_cast<host::i64>(first.size()) - 1)) << name << data.size();
    }
  }
}

TEST_F(Resources, OnlyBytesThatTheStreamDeliversAreDecoded) {
  const Bytes bytes = block(iptcResource, "", dataset("abc"), 0xFFFFFFFF);
  EXPECT_TRUE(walk(bytes));
  EXPECT_EQ(texts(), std::vector<std::string>{"abc"});
  EXPECT_TRUE(walk(block(iptcResource, "", {}, 0x7FFFFFFF), 12)) << "found, though empty";
  EXPECT_EQ(texts().size(), 1u);
}

TEST_F(Resources, ADataSizeThatLiesEndsTheWalk) {
  EXPECT_FALSE(walk(
      support::joined(block(1000, "", {}, 0xFFFFFFFF), block(iptcResource, "", dataset("x")))));
  EXPECT_EQ(stream_.position, stream_.size);
}

TEST_F(Resources, AStreamThatEndsEarlyEndsWithItsBudget) {
  EXPECT_FALSE(walk({}, 0));
  EXPECT_FALSE(walk({}, 65521));
  EXPECT_FALSE(walk(support::bytesOf("8BIM"), 65521));
  EXPECT_FALSE(walk(block(1000, "", {1, 2}), 65521));
}

TEST_F(Resources, EveryPrefixIsReadWithinItsBounds) {
  const Bytes whole =
      support::joined(block(1005, "ab", {1, 2, 3}), block(iptcResource, "abc", dataset("text")));
  for (std::size_t size = 0; size < whole.size(); ++size) {
    walk(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)),
         static_cast<host::i64>(whole.size()));
    EXPECT_LE(stream_.position, stream_.size);
  }
}

}  // namespace
