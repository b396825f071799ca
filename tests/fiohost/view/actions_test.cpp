#include "fiohost/view/actions.h"

#include <gmock/gmock.h>

#include <set>

#include "fiohost/view/action_state.h"
#include "tests/fiohost/support/files.h"

namespace fiohost::view {
namespace {

TEST(Actions, EachStandsOnceInTheTable) {
  std::set<Action> seen;
  for (const ActionRow& row : actionRows()) EXPECT_TRUE(seen.insert(row.action).second) << row.text;
  EXPECT_EQ(seen.size(), static_cast<std::size_t>(Action::noParallax) -
                             static_cast<std::size_t>(Action::open) + 1);
}

TEST(Actions, EachHasAKeyOfItsOwn) {
  std::set<std::string> names;
  for (const ActionRow& row : actionRows()) {
    EXPECT_NE(row.key.code, 0) << row.text;
    EXPECT_TRUE(names.insert(keyName(row.key)).second) << keyName(row.key);
    if (row.second.code != 0) {
      EXPECT_EQ(keyName(row.second), keyName(row.key)) << "the same word for both places";
      EXPECT_FALSE(row.second == row.key);
    }
  }
}

TEST(Actions, AccessKeysDifferWithinAMenu) {
  std::set<std::pair<Menu, char>> seen;
  for (const ActionRow& row : actionRows()) {
    const std::string text = row.text;
    const std::size_t mark = text.find('&');
    ASSERT_NE(mark, std::string::npos) << text;
    const char key = static_cast<char>(std::toupper(text.at(mark + 1)));
    EXPECT_TRUE(seen.emplace(row.menu, key).second) << text;
  }
}

TEST(Actions, KeysHaveNames) {
  EXPECT_EQ(keyName({'S', true, true, true}), "Ctrl+Shift+Alt+S");
  EXPECT_EQ(keyName({keyPageDown}), "Page Down");
  EXPECT_EQ(menuText(actionRows().front()), "&Open...\tCtrl+O");
}

TEST(Actions, TheReadmeShowsThem) {
  EXPECT_THAT(fiohostTest::readText(KF_README), testing::HasSubstr(actionsAsMarkdown()))
      << actionsAsMarkdown();
}

TEST(ActionState, WithoutAFileOnlyOpeningMakesSense) {
  for (const ActionRow& row : actionRows()) {
    const bool always = row.action == Action::open || row.action == Action::leave ||
                        row.action == Action::filmStrip;
    EXPECT_EQ(isEnabled(row.action, {}), always) << row.text;
    EXPECT_FALSE(isChecked(row.action, {.hasFile = true})) << row.text;
  }
}

TEST(ActionState, EachConditionEnablesItsCommands) {
  EXPECT_TRUE(isEnabled(Action::nextFile, {.hasNextFile = true}));
  EXPECT_FALSE(isEnabled(Action::previousFile, {.hasNextFile = true}));
  EXPECT_TRUE(isEnabled(Action::firstFile, {.hasPreviousFile = true}));
  EXPECT_TRUE(isEnabled(Action::nextImage, {.hasNextImage = true}));
  EXPECT_FALSE(isEnabled(Action::previousImage, {.hasNextImage = true}));
  EXPECT_TRUE(isEnabled(Action::stop, {.isWorking = true}));
  EXPECT_TRUE(isEnabled(Action::reload, {.hasNamed = true}));
  EXPECT_TRUE(isEnabled(Action::saveAs, {.hasFile = true}));
  EXPECT_FALSE(isEnabled(Action::saveAs, {.hasFile = true, .isSaving = true}));
  EXPECT_TRUE(isEnabled(Action::wiggle, {.hasPair = true}));
  EXPECT_FALSE(isEnabled(Action::moreParallax, {.hasPair = true}));
  EXPECT_TRUE(isEnabled(Action::moreParallax, {.hasPair = true, .stereo = StereoMode::wiggle}));
}

TEST(ActionState, TheStereoCommandsAreTheModes) {
  EXPECT_EQ(stereoModeOf(Action::stereoOff), StereoMode::off);
  EXPECT_EQ(stereoModeOf(Action::anaglyph), StereoMode::anaglyph);
  EXPECT_EQ(stereoModeOf(Action::sideBySide), StereoMode::sideBySide);
  EXPECT_EQ(stereoModeOf(Action::crossEyed), StereoMode::crossEyed);
  EXPECT_EQ(stereoModeOf(Action::wiggle), StereoMode::wiggle);
  EXPECT_TRUE(isChecked(Action::crossEyed, {.hasPair = true, .stereo = StereoMode::crossEyed}));
  EXPECT_FALSE(isChecked(Action::anaglyph, {.hasPair = true, .stereo = StereoMode::crossEyed}));
}

}  // namespace
}  // namespace fiohost::view
