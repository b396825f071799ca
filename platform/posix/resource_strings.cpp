#include "platform/posix/resource_strings.h"

#include <algorithm>
#include <cstring>

#include "platform/posix/errors.h"
#include "platform/posix/module_table.h"
#include "platform/posix/unicode.h"

namespace platform::posix {
namespace {

// The text of an id, or null with the last error set.
const char* findString(HINSTANCE module, UINT id) {
  const auto* string = static_cast<const ResourceString*>(findExport(module, "resource.strings"));
  if (string == nullptr) return failWith<const char*>(ERROR_RESOURCE_DATA_NOT_FOUND, nullptr);
  for (; string->text != nullptr; ++string) {
    if (string->id == id) return string->text;
  }
  return failWith<const char*>(ERROR_RESOURCE_NAME_NOT_FOUND, nullptr);
}

}  // namespace
}  // namespace platform::posix

using namespace platform::posix;

int LoadStringA(HINSTANCE module, UINT id, LPSTR buffer, int capacity) noexcept {
  if (buffer == nullptr || capacity <= 0) return failWith(ERROR_INVALID_PARAMETER, 0);
  buffer[0] = '\0';
  const char* text = findString(module, id);
  if (text == nullptr) return 0;
  const std::size_t length = wholeCharacters(text, static_cast<std::size_t>(capacity) - 1);
  std::memcpy(buffer, text, length);
  buffer[length] = '\0';
  return static_cast<int>(length);
}
