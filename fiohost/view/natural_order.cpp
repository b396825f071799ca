#include "fiohost/view/natural_order.h"

namespace fiohost::view {
namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

unsigned char folded(char c) {
  return static_cast<unsigned char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
}

// The digits at the text's front, without leading zeros; the text goes on behind them.
std::string_view takeNumber(std::string_view& text) {
  std::size_t length = 0;
  while (length < text.size() && isDigit(text[length])) ++length;
  std::string_view digits = text.substr(0, length);
  text.remove_prefix(length);
  while (digits.size() > 1 && digits.front() == '0') digits.remove_prefix(1);
  return digits;
}

// Negative, 0 or positive, as the first differs from the second.
int compareFront(std::string_view& a, std::string_view& b) {
  if (isDigit(a.front()) && isDigit(b.front())) {
    const std::string_view first = takeNumber(a);
    const std::string_view second = takeNumber(b);
    if (first.size() != second.size()) return first.size() < second.size() ? -1 : 1;
    return first.compare(second);
  }
  const int difference = folded(a.front()) - folded(b.front());
  a.remove_prefix(1);
  b.remove_prefix(1);
  return difference;
}

}  // namespace

bool naturalLess(std::string_view a, std::string_view b) {
  std::string_view restOfA = a;
  std::string_view restOfB = b;
  while (!restOfA.empty() && !restOfB.empty()) {
    const int difference = compareFront(restOfA, restOfB);
    if (difference != 0) return difference < 0;
  }
  if (restOfA.empty() != restOfB.empty()) return restOfA.empty();
  return a < b;
}

}  // namespace fiohost::view
