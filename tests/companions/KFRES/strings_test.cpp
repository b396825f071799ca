#include <string>
#include <vector>

#include "tests/companions/loaded_module.h"

namespace {

struct ListedString {
  unsigned id;
  std::string text;
};

const std::vector<ListedString>& listedStrings() {
#define KF_STRING(id, text) {id, text},
  static const std::vector<ListedString> strings = {
#include "companions/KFRES/strings.inc"
  };
#undef KF_STRING
  return strings;
}

struct IdRange {
  unsigned first;
  unsigned last;
  std::size_t limit;  // characters that the narrowest reader takes
};

// What the plug-in loads, besides the labels that the tag tables name.
constexpr IdRange neededRanges[] = {
    {750, 751, 259},   {770, 770, 47},   {781, 782, 259},  {785, 788, 259},   {791, 792, 259},
    {793, 793, 62},    {794, 795, 259},  {801, 814, 259},  {820, 826, 259},   {2331, 2382, 47},
    {2400, 2419, 61},  {2601, 2602, 61}, {2610, 2610, 61}, {2620, 2621, 259}, {2704, 2705, 61},
    {2715, 2715, 259}, {2800, 2883, 61}, {3600, 3617, 61}, {3620, 3624, 61},  {3700, 3705, 259},
};

class Strings : public testing::Test {
 protected:
  [[nodiscard]] std::string load(unsigned id) const {
    char text[260] = {};
    const int length = LoadStringA(module_.handle(), id, text, sizeof(text));
    EXPECT_EQ(static_cast<std::size_t>(length), std::string(text).size());
    return text;
  }

  test::LoadedModule module_{"KFRES.DLL"};
};

TEST_F(Strings, AreTheListedOnes) {
  for (const ListedString& string : listedStrings()) {
    EXPECT_EQ(load(string.id), string.text) << string.id;
  }
}

TEST_F(Strings, AreListedOnceAndInOrder) {
  const auto& strings = listedStrings();
  ASSERT_FALSE(strings.empty());
  for (std::size_t i = 1; i < strings.size(); ++i) {
    EXPECT_LT(strings[i - 1].id, strings[i].id);
  }
}

TEST_F(Strings, AreThereForEveryNumberAndShortEnough) {
  for (const IdRange& range : neededRanges) {
    for (unsigned id = range.first; id <= range.last; ++id) {
      const std::string text = load(id);
      EXPECT_FALSE(text.empty()) << id;
      EXPECT_LE(text.size(), range.limit) << id << ": " << text;
    }
  }
}

TEST_F(Strings, AreAsciiThatEveryCodePageShows) {
  for (const ListedString& string : listedStrings()) {
    for (const char character : string.text) {
      EXPECT_GE(character, ' ') << string.id;
      EXPECT_LE(character, '~') << string.id;
    }
  }
}

TEST_F(Strings, BeginWithASpaceWhereTheyAreAppended) {
  for (unsigned id = 3600; id <= 3624; ++id) {
    EXPECT_TRUE(load(id).empty() || load(id).front() == ' ') << id;
  }
}

// The write-back reads dates in this very form.
TEST_F(Strings, HoldTheFormatOfADate) { EXPECT_EQ(load(2715), "%d/%d/%d %d:%d:%d"); }

TEST_F(Strings, NameValuesByTheirNumbers) {
  EXPECT_EQ(load(770), "JPEG");
  EXPECT_EQ(load(2376), "sRGB");
  EXPECT_EQ(load(2341), "Flash did not fire");
  EXPECT_EQ(load(2342), "Flash fired");
  EXPECT_EQ(load(2345 + 4), "Flash") << "light source 4";
  EXPECT_EQ(load(2358 + 3), "Aperture priority") << "exposure program 3";
  EXPECT_EQ(load(2333 + 5), "Pattern") << "metering mode 5";
  EXPECT_EQ(load(2367 + 2), "One-chip colour area sensor") << "sensing method 2";
  EXPECT_EQ(load(2800 + 9), "File format");
}

TEST_F(Strings, AreEmptyForOtherNumbers) {
  EXPECT_EQ(load(1), "");
  EXPECT_EQ(load(3618), "");
  EXPECT_EQ(load(65535), "");
}

}  // namespace
