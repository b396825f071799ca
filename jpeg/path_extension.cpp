#include "jpeg/path_extension.h"

namespace jpeg {
namespace {

// The end of the path when its last component has no dot.
template <typename Char>
const Char* extensionOf(const Char* path) noexcept {
  const Char* dot = nullptr;
  const Char* end = path;
  for (; *end != Char{}; ++end) {
    if (*end == Char{'\\'} || *end == Char{'/'}) dot = nullptr;
    if (*end == Char{'.'}) dot = end;
  }
  return dot != nullptr ? dot : end;
}

template <typename Char>
bool isMpo(const Char* path) noexcept {
  constexpr char lower[] = ".mpo";
  const Char* extension = extensionOf(path);
  for (const char expected : lower) {
    Char found = *extension++;
    if (found >= Char{'A'} && found <= Char{'Z'}) found = static_cast<Char>(found - 'A' + 'a');
    if (found != static_cast<Char>(expected)) return false;
  }
  return true;
}

}  // namespace

bool hasMpoExtension(const char* path) noexcept { return isMpo(path); }

bool hasMpoExtension(const wchar_t* path) noexcept { return isMpo(path); }

}  // namespace jpeg
