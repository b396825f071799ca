#include "fiohost/view/window/menu.h"

#include <vector>

#include "platform/wide_text.h"

namespace fiohost::view {
namespace {

static_assert(keyReturn == VK_RETURN && keyEscape == VK_ESCAPE && keyPageUp == VK_PRIOR &&
              keyPageDown == VK_NEXT && keyEnd == VK_END && keyHome == VK_HOME &&
              keyLeft == VK_LEFT && keyRight == VK_RIGHT && keyNumpadPlus == VK_ADD &&
              keyNumpadMinus == VK_SUBTRACT && keyF5 == VK_F5 && keyPlus == VK_OEM_PLUS &&
              keyMinus == VK_OEM_MINUS);

constexpr UINT idOf(Action action) { return static_cast<UINT>(action); }

HMENU makeMenu(Menu menu) {
  HMENU popup = CreatePopupMenu();
  for (const ActionRow& row : actionRows()) {
    if (row.menu != menu) continue;
    if (row.separatorBefore) AppendMenuW(popup, MF_SEPARATOR, 0, nullptr);
    AppendMenuW(popup, MF_STRING, idOf(row.action), platform::wideText(menuText(row)).c_str());
  }
  return popup;
}

ACCEL accelerator(const Key& key, Action action) {
  ACCEL result = {};
  result.fVirt = static_cast<BYTE>(FVIRTKEY | (key.control ? FCONTROL : 0) |
                                   (key.shift ? FSHIFT : 0) | (key.alt ? FALT : 0));
  result.key = key.code;
  result.cmd = static_cast<WORD>(action);
  return result;
}

}  // namespace

HMENU makeMenuBar() {
  HMENU bar = CreateMenu();
  for (int i = 0; i < menuCount; ++i) {
    const auto menu = static_cast<Menu>(i);
    AppendMenuW(bar, MF_POPUP, reinterpret_cast<UINT_PTR>(makeMenu(menu)),
                platform::wideText(menuTitle(menu)).c_str());
  }
  return bar;
}

OwnedKeys makeKeys() {
  std::vector<ACCEL> keys;
  for (const ActionRow& row : actionRows()) {
    keys.push_back(accelerator(row.key, row.action));
    if (row.second.code != 0) keys.push_back(accelerator(row.second, row.action));
  }
  return OwnedKeys(CreateAcceleratorTableW(keys.data(), static_cast<int>(keys.size())));
}

void updateMenu(HMENU bar, const ViewerState& state) {
  for (const ActionRow& row : actionRows()) {
    EnableMenuItem(
        bar, idOf(row.action),
        MF_BYCOMMAND | (isEnabled(row.action, state) ? UINT{MF_ENABLED} : UINT{MF_GRAYED}));
    CheckMenuItem(
        bar, idOf(row.action),
        MF_BYCOMMAND | (isChecked(row.action, state) ? UINT{MF_CHECKED} : UINT{MF_UNCHECKED}));
  }
}

}  // namespace fiohost::view
