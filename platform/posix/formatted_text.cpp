#include <algorithm>
#include <cstdarg>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/posix/errors.h"

namespace platform::posix {
namespace {

constexpr std::size_t longestText = 1023;

// One conversion: %[-#0][width][.precision][h|l]type.
struct Conversion {
  bool left = false;
  bool zeros = false;
  bool prefixed = false;
  std::size_t width = 0;
  std::size_t precision = std::string_view::npos;  // npos = not given
  char type = '\0';
};

std::size_t readNumber(const char*& format) {
  std::size_t number = 0;
  for (; *format >= '0' && *format <= '9'; ++format) {
    number = std::min(number * 10 + static_cast<std::size_t>(*format - '0'), longestText);
  }
  return number;
}

// Reads what follows the percent sign and leaves `format` behind the type.
Conversion readConversion(const char*& format) {
  Conversion conversion;
  for (;; ++format) {
    if (*format == '-') {
      conversion.left = true;
    } else if (*format == '0') {
      conversion.zeros = true;
    } else if (*format == '#') {
      conversion.prefixed = true;
    } else {
      break;
    }
  }
  conversion.width = readNumber(format);
  if (*format == '.') conversion.precision = readNumber(++format);
  if (*format == 'h' || *format == 'l') ++format;
  conversion.type = *format;
  if (*format != '\0') ++format;
  return conversion;
}

std::string digitsOf(UINT value, UINT base, bool capital) {
  const char* digits = capital ? "0123456789ABCDEF" : "0123456789abcdef";
  std::string text;
  do {
    text.insert(text.begin(), digits[value % base]);
    value /= base;
  } while (value != 0);
  return text;
}

std::string padded(const Conversion& conversion, const std::string& sign, const std::string& text) {
  const std::size_t length = sign.size() + text.size();
  const std::size_t missing = conversion.width > length ? conversion.width - length : 0;
  if (conversion.left) return sign + text + std::string(missing, ' ');
  if (conversion.zeros) return sign + std::string(missing, '0') + text;
  return std::string(missing, ' ') + sign + text;
}

std::string formatNumber(const Conversion& conversion, UINT value) {
  const bool isSigned = conversion.type == 'd' || conversion.type == 'i';
  const bool hexadecimal = conversion.type == 'x' || conversion.type == 'X';
  const bool negative = isSigned && value > static_cast<UINT>(INT32_MAX);
  std::string digits =
      digitsOf(negative ? 0 - value : value, hexadecimal ? 16 : 10, conversion.type == 'X');
  if (conversion.precision != std::string_view::npos && digits.size() < conversion.precision) {
    digits.insert(0, conversion.precision - digits.size(), '0');
  }
  std::string sign = negative ? "-" : "";
  if (hexadecimal && conversion.prefixed) sign = {'0', conversion.type};
  return padded(conversion, sign, digits);
}

std::string formatString(const Conversion& conversion, const char* text) {
  const std::string_view whole = text != nullptr ? text : "(null)";
  return padded(conversion, "", std::string(whole.substr(0, conversion.precision)));
}

// In a record, because a list that is itself passed on is spent.
struct Arguments {
  std::va_list list;
};

// The analysis does not see that the caller has begun the list.
// NOLINTBEGIN(clang-analyzer-valist.Uninitialized)
std::string formatOne(const Conversion& conversion, Arguments& arguments) {
  switch (conversion.type) {
    case 'd':
    case 'i':
    case 'u':
    case 'x':
    case 'X':
      return formatNumber(conversion, va_arg(arguments.list, UINT));
    case 'c':
      return padded(conversion, "", std::string(1, static_cast<char>(va_arg(arguments.list, int))));
    case 's':
      return formatString(conversion, va_arg(arguments.list, const char*));
    case '\0':
      return {};
    default:
      return std::string(1,
                         conversion.type);  // the second of two percent signs, and what is unknown
  }
}
// NOLINTEND(clang-analyzer-valist.Uninitialized)

std::string formatText(const char* format, Arguments& arguments) {
  std::string text;
  while (*format != '\0' && text.size() < longestText) {
    if (*format != '%') {
      text.push_back(*format++);
      continue;
    }
    const Conversion conversion = readConversion(++format);
    text += formatOne(conversion, arguments);
  }
  return text.substr(0, longestText);
}

}  // namespace
}  // namespace platform::posix

using namespace platform::posix;

int wsprintfA(LPSTR buffer, LPCSTR format, ...) noexcept {
  Arguments arguments;
  va_start(arguments.list, format);
  const int length = guarded(0, [&] {
    const std::string text = formatText(format, arguments);
    buffer[text.copy(buffer, text.size())] = '\0';
    return static_cast<int>(text.size());
  });
  va_end(arguments.list);
  return length;
}
