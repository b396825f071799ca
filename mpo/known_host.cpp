#include "mpo/known_host.h"

#include <algorithm>

#include "platform/system.h"

namespace mpo {
namespace {

constexpr std::string_view knownNames[] = {"Kavro Pixel Studio Pro One", "Gallo", "QX"};

char lowerCase(char letter) noexcept {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

bool beginsWith(std::string_view text, std::string_view name) noexcept {
  return text.size() >= name.size() &&
         std::equal(name.begin(), name.end(), text.begin(),
                    [](char a, char b) { return lowerCase(a) == lowerCase(b); });
}

}  // namespace

bool isKnownHost(std::string_view executablePath) noexcept {
  const std::size_t backslash = executablePath.rfind('\\');
  if (backslash == std::string_view::npos) return false;
  const std::string_view name = executablePath.substr(backslash + 1);
  return std::any_of(std::begin(knownNames), std::end(knownNames),
                     [name](std::string_view known) { return beginsWith(name, known); });
}

bool runsInKnownHost() noexcept {
  char path[260] = {};
  const DWORD length = GetModuleFileNameA(nullptr, path, sizeof path);
  return isKnownHost({path, std::min<std::size_t>(length, sizeof path)});
}

}  // namespace mpo
