#include "viewer/clipboard.h"

#include <cstring>
#include <new>

#include "platform/global_memory.h"
#include "platform/window_handles.h"
#include "viewer/wide_text.h"

namespace viewer {
namespace {

platform::OwnedGlobal blockOf(std::wstring_view text) noexcept {
  const std::size_t bytes = text.size() * sizeof(wchar_t);
  platform::OwnedGlobal block(platform::movableZeroed, bytes + sizeof(wchar_t));
  const platform::LockedGlobal lock(block.get());
  if (!lock) return {};
  std::memcpy(lock.address(), text.data(), bytes);
  return block;
}

}  // namespace

bool isCopyKey(WORD virtualKey) noexcept {
  return virtualKey == 'C' && GetKeyState(VK_CONTROL) < 0;
}

void copyText(HWND owner, std::wstring_view text) noexcept {
  if (text.empty()) return;
  platform::OwnedGlobal block = blockOf(text);
  const platform::OpenedClipboard clipboard(owner);
  if (!block || !clipboard) return;
  static_cast<void>(clipboard.put(CF_UNICODETEXT, std::move(block)));
}

void copyText(HWND owner, std::string_view text) noexcept {
  try {
    copyText(owner, std::wstring_view(wideText(text)));
  } catch (const std::bad_alloc&) {
    // The clipboard stays as it is.
  }
}

}  // namespace viewer
