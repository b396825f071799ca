// Nothing of the pages is cut off, at whatever dots per inch the display has, and every control is
// reached by an access key.
#include <gmock/gmock.h>

#include <cstdlib>
#include <set>

#include "tests/windows/property_dialog_fixture.h"
#include "tests/windows/support/screenshot.h"

namespace {

using namespace test;

// The run names the display's figure; without it, it is the usual one.
class PropertyPageFit : public PropertyDialogTest {
 protected:
  void SetUp() override {
    const char* expected = std::getenv("KF_DPI");
    const HDC display = GetDC(nullptr);
    const int found = GetDeviceCaps(display, LOGPIXELSX);
    ReleaseDC(nullptr, display);
    suffix_ = "_at_" + std::to_string(found);
    ASSERT_EQ(found, expected != nullptr ? std::atoi(expected) : 96);
  }

  std::string suffix_;
};

SIZE textSize(const Window& window) {
  const HDC context = GetDC(window.handle());
  const auto font = reinterpret_cast<HFONT>(window.send(WM_GETFONT));
  const HGDIOBJ previous = SelectObject(context, font);
  RECT area = {};
  DrawTextA(context, window.text().c_str(), -1, &area, DT_CALCRECT | DT_SINGLELINE);
  SelectObject(context, previous);
  ReleaseDC(window.handle(), context);
  return {area.right, area.bottom};
}

std::vector<Window> labelsOf(const Window& page) {
  std::vector<Window> labels;
  for (const Window& child : page.children()) {
    const RECT area = child.clientArea();
    if (child.className() == "Static" && child.visible() && area.right > 0) labels.push_back(child);
  }
  return labels;
}

TEST_F(PropertyPageFit, EveryControlLiesInsideItsPageAndEveryLabelFits) {
  open(everything);
  for (int index = 0; index < 5; ++index) {
    const Window page = sheet().page(index);
    const RECT client = page.clientArea();
    for (const Window& child : page.children()) {
      const RECT place = child.placeIn(page);
      EXPECT_GE(place.left, 0) << index << ' ' << child;
      EXPECT_LE(place.right, client.right) << index << ' ' << child;
      EXPECT_LE(place.bottom, client.bottom) << index << ' ' << child;
    }
    for (const Window& label : labelsOf(page)) {
      const RECT area = label.clientArea();
      EXPECT_LE(textSize(label).cx, area.right) << label;
      EXPECT_LE(textSize(label).cy, area.bottom + 1) << label;
    }
    EXPECT_GT(saveScreenshot(sheet().window(), "property_page_" + std::to_string(index) + suffix_),
              8U);
  }
  close();
}

TEST_F(PropertyPageFit, ValuesOfTheGeneralPageFitAndStandBesideTheirLabels) {
  open(everything);
  const Window page = sheet().page(0);
  for (int id = 3202; id <= 3210; ++id) {
    const Window value = page.control(id);
    EXPECT_LE(textSize(value).cx, value.clientArea().right) << value;
    const RECT place = value.placeIn(page);
    const RECT label = page.control(id + 50).placeIn(page);
    EXPECT_LE(label.right, place.left) << id;
    EXPECT_NEAR(label.top, place.top, 3) << id;
  }
  close();
}

// Every list, box and value follows a label whose access key is its own.
TEST_F(PropertyPageFit, ALabelWithAnAccessKeyStandsBeforeEveryControl) {
  open(everything);
  for (const int index : {0, 2, 3, 4}) {
    const std::vector<Window> controls = sheet().page(index).children();
    std::set<char> keys;
    for (std::size_t i = 0; i < controls.size(); ++i) {
      if (controls[i].className() == "Static") continue;
      ASSERT_GT(i, 0U) << index;
      const std::string label = controls[i - 1].text();
      const std::size_t mark = label.find('&');
      ASSERT_NE(mark, std::string::npos) << index << ' ' << label;
      const char key = static_cast<char>(std::tolower(label.at(mark + 1)));
      EXPECT_TRUE(keys.insert(key).second) << "a second " << key << " on page " << index;
    }
  }
  close();
}

}  // namespace
