// Stale indexes of multi-picture files, found and put right.
#include "tests/fiohost/support/mpo_fixture.h"
#include "tests/support/jpeg_builder.h"

namespace fiohostTest {
namespace {

using testing::HasSubstr;
using testing::Not;

class MpoVerifyTest : public MpoProgramTest {
 protected:
  void SetUp() override {
    MpoProgramTest::SetUp();
    static_cast<void>(build(addPictures(3), {"--kind", "multi-angle"}));
    right_ = readBytes(file("out.mpo"));
  }
  // A segment more in the first image, as an editor leaves it that knows nothing of the index. Its
  // payload is a whole picture, which is none of the file's.
  [[nodiscard]] Bytes edited() const {
    const Bytes inner = makeJpeg({.width = 16, .height = 16});
    Bytes segment = {0xFF, 0xEB};
    segment.push_back(static_cast<std::uint8_t>((inner.size() + 2) >> 8));
    segment.push_back(static_cast<std::uint8_t>(inner.size() + 2));
    segment.insert(segment.end(), inner.begin(), inner.end());
    Bytes bytes = right_;
    const auto behindIndex = static_cast<std::ptrdiff_t>(placeOf(0xFF, 0xDB));
    bytes.insert(bytes.begin() + behindIndex, segment.begin(), segment.end());
    return bytes;
  }
  [[nodiscard]] std::size_t placeOf(std::uint8_t first, std::uint8_t second) const {
    const std::uint8_t both[] = {first, second};
    return static_cast<std::size_t>(
        std::search(right_.begin(), right_.end(), std::begin(both), std::end(both)) -
        right_.begin());
  }
  // Place of the MP Entry of an image, from 1: behind the IFD of five entries of this program's own
  // files, whose version word is the first value.
  [[nodiscard]] std::size_t entryPlace(unsigned number) const {
    const std::string signature("MPF\0II", 6);
    const auto found =
        std::search(right_.begin(), right_.end(), signature.begin(), signature.end());
    const auto header = static_cast<std::size_t>(found - right_.begin()) + 4;
    constexpr std::size_t entries = 4;
    return header + 8 + 2 + entries * 12 + 4 + 16 * (number - 1U);
  }
  // The entry for the number of images, the second of the IFD.
  [[nodiscard]] std::size_t countEntryPlace() const { return entryPlace(1) - 4 - 3 * 12; }
  void put32(Bytes& bytes, std::size_t place, std::uint32_t value) const {
    for (unsigned i = 0; i < 4; ++i) bytes[place + i] = static_cast<std::uint8_t>(value >> 8 * i);
  }
  [[nodiscard]] nlohmann::json faults(const Bytes& bytes) const {
    writeBytes(file("bad.mpo"), bytes);
    const ProcessResult result = run({"mpo", "verify", "bad.mpo", "--json"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err, "");
    return nlohmann::json::parse(result.out).at(0)["faults"];
  }
  void expectRepairGives(const Bytes& expected) const {
    const ProcessResult result = run({"mpo", "repair", "bad.mpo", "-o", "good.mpo", "--force"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_TRUE(readBytes(file("good.mpo")) == expected);
    EXPECT_EQ(run({"mpo", "verify", "good.mpo"}).exitCode, 0);
  }

  Bytes right_;
};

TEST_F(MpoVerifyTest, ARightFileHasNoFaults) {
  const ProcessResult result = run({"mpo", "verify", "out.mpo"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.out, "out.mpo: 3 images, all where the index says\n");
  EXPECT_EQ(run({"mpo", "repair", "out.mpo", "-o", "same.mpo"}).exitCode, 0);
  EXPECT_EQ(readBytes(file("same.mpo")), right_);
}

TEST_F(MpoVerifyTest, AnEditedFirstImageMakesEveryPlaceStale) {
  const Bytes bad = edited();
  const nlohmann::json found = faults(bad);
  ASSERT_EQ(found.size(), 3U);
  EXPECT_EQ(found[0]["kind"], "size");
  EXPECT_EQ(found[0]["image"], 1);
  EXPECT_EQ(found[1]["kind"], "place");
  EXPECT_EQ(found[2]["image"], 3);
  const std::string sentence = found[1]["sentence"];
  const std::size_t shift = bad.size() - right_.size();
  const std::size_t second = info("out.mpo")["images"][1]["offset"];
  EXPECT_EQ(sentence, "bad.mpo: image 2: the index says that it begins at byte " +
                          std::to_string(second) + ", but it begins at byte " +
                          std::to_string(second + shift) +
                          "; \"fiohost mpo repair\" writes it right");
  const ProcessResult words = run({"mpo", "verify", "bad.mpo", "out.mpo"});
  EXPECT_EQ(words.exitCode, 1);
  EXPECT_THAT(words.out, HasSubstr(sentence + "\n"));
  EXPECT_THAT(words.out, HasSubstr("out.mpo: 3 images"));
}

TEST_F(MpoVerifyTest, RepairChangesWordsOfTheIndexOnly) {
  const Bytes bad = edited();
  static_cast<void>(faults(bad));
  EXPECT_EQ(run({"mpo", "repair", "bad.mpo", "-o", "good.mpo"}).exitCode, 0);
  const Bytes good = readBytes(file("good.mpo"));
  ASSERT_EQ(good.size(), bad.size());
  for (std::size_t i = 0; i < good.size(); ++i) {
    if (good[i] == bad[i]) continue;
    EXPECT_GE(i, entryPlace(1));
    EXPECT_LT(i, entryPlace(4));
  }
  expectExtractionAgrees("good.mpo", "good");
}

TEST_F(MpoVerifyTest, WrongSizesAndPlacesAreFoundOneByOne) {
  Bytes bad = right_;
  put32(bad, entryPlace(2) + 4, 100);
  EXPECT_EQ(faults(bad)[0]["kind"], "size");
  expectRepairGives(right_);
  bad = right_;
  put32(bad, entryPlace(3) + 8, 5);
  EXPECT_EQ(faults(bad)[0]["kind"], "place");
  EXPECT_EQ(faults(bad).size(), 1U);
  expectRepairGives(right_);
  bad = right_;
  put32(bad, entryPlace(1) + 8, 5);  // the first image's is zero by definition
  EXPECT_EQ(faults(bad)[0]["image"], 1);
  expectRepairGives(right_);
}

TEST_F(MpoVerifyTest, FillingBehindAPictureMayBelongToItsSize) {
  const std::size_t end = info("out.mpo")["images"][1]["offset"];
  Bytes filled = right_;
  filled.insert(filled.begin() + static_cast<std::ptrdiff_t>(end), 3, 0);
  static_cast<void>(faults(filled));
  EXPECT_EQ(run({"mpo", "repair", "bad.mpo", "-o", "good.mpo"}).exitCode, 0);
  Bytes good = readBytes(file("good.mpo"));
  put32(good, entryPlace(1) + 4, static_cast<std::uint32_t>(end + 3));
  writeBytes(file("filled.mpo"), good);
  EXPECT_EQ(run({"mpo", "verify", "filled.mpo"}).exitCode, 0);
  good[end + 1] = 'x';
  EXPECT_EQ(faults(good)[0]["kind"], "size");
}

TEST_F(MpoVerifyTest, OtherFaultsOfTheIndex) {
  Bytes bad = right_;
  bad[entryPlace(1) + 12] = 9;
  EXPECT_EQ(faults(bad)[0]["kind"], "dependent");
  expectRepairGives(right_);
  bad = right_;
  bad[entryPlace(2) + 3] = 0x20;
  EXPECT_EQ(faults(bad)[0]["kind"], "representative");
  expectRepairGives(right_);
  bad = right_;
  put32(bad, countEntryPlace() + 8, 2);
  EXPECT_THAT(faults(bad)[0]["sentence"], HasSubstr("tells of 2 images and lists 3"));
  expectRepairGives(right_);
}

TEST_F(MpoVerifyTest, AnIndexWithoutACountGetsOne) {
  Bytes bad = right_;
  bad[countEntryPlace() + 1] = 0xF0;  // a tag that nobody knows
  EXPECT_EQ(faults(bad).size(), 1U);
  EXPECT_EQ(run({"mpo", "repair", "bad.mpo", "-o", "good.mpo", "--force"}).exitCode, 0);
  EXPECT_EQ(run({"mpo", "verify", "good.mpo"}).exitCode, 0);
}

// Behind the third of four pictures lies the torn head of another, with a comment that ends inside
// the picture behind it. In the order of the index that would be another picture, and the comment
// would end behind its first segment: a stream that hides it.
TEST_F(MpoVerifyTest, PicturesThatWouldNotBeToldApartAreRefused) {
  static_cast<void>(build(addPictures(4), {"--kind", "multi-angle"}));
  right_ = readBytes(file("out.mpo"));
  std::vector<Bytes> pictures;
  const nlohmann::json images = info("out.mpo")["images"];
  for (const nlohmann::json& image : images) pictures.push_back(rangeOf("out.mpo", image));
  const std::size_t commentLength = 2 + 2 + 2 + pictures[3][5];  // FF D8, a marker and its segment
  Bytes longSegment(100, 0);
  std::copy_n(Bytes{0xFF, 0xEB, 0, 98}.begin(), 4, longSegment.begin());
  pictures[1].insert(pictures[1].begin() + 2, longSegment.begin(), longSegment.end());
  const Bytes torn = {0xFF, 0xD8, 0xFF, 0xFE, 0, static_cast<std::uint8_t>(commentLength)};

  Bytes bad = pictures[0];
  const std::size_t header = entryPlace(1) - 4 - 4 * 12 - 2 - 8;
  const auto append = [&](unsigned number) {
    put32(bad, entryPlace(number) + 4, static_cast<std::uint32_t>(pictures[number - 1].size()));
    put32(bad, entryPlace(number) + 8, static_cast<std::uint32_t>(bad.size() - header));
    bad.insert(bad.end(), pictures[number - 1].begin(), pictures[number - 1].end());
  };
  append(3);
  bad.insert(bad.end(), torn.begin(), torn.end());
  append(2);
  append(4);
  writeBytes(file("bad.mpo"), bad);
  EXPECT_EQ(run({"mpo", "verify", "bad.mpo"}).exitCode, 0);

  bad[countEntryPlace() + 1] = 0xF0;  // a tag that nobody knows
  EXPECT_EQ(faults(bad).size(), 1U);
  const ProcessResult result = run({"mpo", "repair", "bad.mpo", "-o", "good.mpo"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, HasSubstr("bad.mpo"));
  EXPECT_THAT(result.err, HasSubstr("its pictures cannot be told apart; fetch the file again"));
  EXPECT_FALSE(std::filesystem::exists(file("good.mpo")));
}

// The second image of the list is the last of the file, and cut: put in its place it would have no
// end.
TEST_F(MpoVerifyTest, APictureThatWouldHideAnotherIsNotStripped) {
  Bytes bad = right_;
  const auto second = bad.begin() + static_cast<std::ptrdiff_t>(entryPlace(2)) + 4;
  std::swap_ranges(second, second + 8, second + 16);  // sizes and places
  writeBytes(file("swapped.mpo"), bad);
  EXPECT_EQ(run({"strip", "swapped.mpo", "--all", "-o", "open.mpo"}).exitCode, 0);
  bad.resize(bad.size() - 50);
  writeBytes(file("bad.mpo"), bad);
  const ProcessResult result = run({"strip", "bad.mpo", "--all", "-o", "none.mpo"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, HasSubstr("a picture of it is damaged and would hide another"));
  EXPECT_FALSE(std::filesystem::exists(file("none.mpo")));
  bad = right_;
  bad.resize(bad.size() - 50);  // nothing is behind it
  writeBytes(file("bad.mpo"), bad);
  EXPECT_EQ(run({"strip", "bad.mpo", "--all", "-o", "cut.mpo"}).exitCode, 0);
}

TEST_F(MpoVerifyTest, AnImageThatIsGoneIsDropped) {
  const std::size_t third = info("out.mpo")["images"][2]["offset"];
  Bytes bad = right_;
  bad.resize(third);
  EXPECT_EQ(faults(bad)[0]["kind"], "missing");
  EXPECT_EQ(run({"mpo", "repair", "bad.mpo", "-o", "good.mpo"}).exitCode, 0);
  EXPECT_EQ(info("good.mpo")["images"].size(), 2U);
  expectExtractionAgrees("good.mpo", "good");
  bad.resize(info("out.mpo")["images"][1]["offset"]);
  static_cast<void>(faults(bad));
  const ProcessResult alone = run({"mpo", "repair", "bad.mpo", "-o", "none.mpo"});
  EXPECT_EQ(alone.exitCode, 1);
  EXPECT_THAT(alone.err, HasSubstr("image 2: there is no picture for it in the file"));
  EXPECT_FALSE(std::filesystem::exists(file("none.mpo")));
}

TEST_F(MpoVerifyTest, ACutImageCannotBeRepaired) {
  Bytes bad = right_;
  bad.resize(bad.size() - 50);
  EXPECT_EQ(faults(bad)[0]["kind"], "cut");
  const ProcessResult result = run({"mpo", "repair", "bad.mpo", "-o", "good.mpo"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, HasSubstr("image 3: its picture ends without an end-of-image marker"));
}

TEST_F(MpoVerifyTest, OtherFilesHaveNoIndex) {
  EXPECT_EQ(faults(makeJpeg({}))[0]["kind"], "no index");
  EXPECT_EQ(faults({'t', 'e', 'x', 't'})[0]["kind"], "no index");
  Bytes bad = right_;
  put32(bad, entryPlace(1) - 4 - 4 * 12 - 2 - 4, 0x7000);  // the first directory's place
  EXPECT_EQ(faults(bad)[0]["kind"], "damaged index");
  EXPECT_EQ(run({"mpo", "repair", "bad.mpo", "-o", "good.mpo"}).exitCode, 1);
  EXPECT_EQ(run({"mpo", "verify", "absent.mpo"}).exitCode, 1);
}

TEST_F(MpoVerifyTest, EditsRefuseAStaleIndex) {
  static_cast<void>(faults(edited()));
  const ProcessResult result =
      run({"mpo", "reorder", "bad.mpo", "--order", "3,2,1", "-o", "x.mpo"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, HasSubstr("put the index right with \"fiohost mpo repair\" first"));
}

TEST_F(MpoVerifyTest, AStreamOfNoEntryIsToldAndKept) {
  Bytes more = right_;
  const Bytes extra = makeJpeg({.width = 16, .height = 16});
  more.insert(more.end(), extra.begin(), extra.end());
  writeBytes(file("more.mpo"), more);
  const ProcessResult result = run({"mpo", "verify", "more.mpo"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_THAT(result.out, HasSubstr("more.mpo: 1 more JPEG stream lies in the file"));
  EXPECT_EQ(run({"mpo", "reorder", "more.mpo", "--order", "3,2,1", "-o", "x.mpo"}).exitCode, 0);
  const Bytes edited = readBytes(file("x.mpo"));
  EXPECT_TRUE(std::equal(extra.rbegin(), extra.rend(), edited.rbegin()));
}

}  // namespace
}  // namespace fiohostTest
