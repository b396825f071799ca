#include "fiohost/similar_names.h"

#include <algorithm>
#include <cctype>
#include <numeric>

namespace fiohost {
namespace {

// Letters to insert, remove or replace to make one text of the other.
std::size_t distance(const std::string& a, const std::string& b) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (const char letter : a) {
    std::size_t diagonal = row[0]++;
    for (std::size_t j = 0; j < b.size(); ++j) {
      const std::size_t replaced = diagonal + (letter == b[j] ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({replaced, row[j] + 1, row[j + 1] + 1});
    }
  }
  return row.back();
}

bool isNear(const std::string& given, const std::string& name) {
  return name.find(given) != std::string::npos || given.find(name) != std::string::npos ||
         distance(given, name) <= 1 + name.size() / 4;
}

}  // namespace

std::string lowered(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](char letter) {
    return static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
  });
  return text;
}

std::string quotedNames(const std::vector<std::string>& names) {
  std::string all;
  for (const std::string& name : names) all += (all.empty() ? "\"" : ", \"") + name + "\"";
  return all;
}

std::string similarNames(const std::vector<std::string>& names, const std::string& given) {
  std::vector<std::string> similar;
  for (const std::string& name : names) {
    if (isNear(lowered(given), lowered(name))) similar.push_back(name);
  }
  return quotedNames(similar);
}

}  // namespace fiohost
