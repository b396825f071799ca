// A JSON value as the commands print it: built member by member, in order, and written as text.
#pragma once

#include <concepts>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace fiohost {

// Destroying one takes no memory, so that a machine without any still ends a command in order.
class Json {
 public:
  Json(std::nullptr_t = nullptr) noexcept {}
  Json(bool value) noexcept : kind_(Kind::truth), number_(value ? 1 : 0) {}
  template <std::integral Number>
  Json(Number value) noexcept
      : kind_(std::is_signed_v<Number> ? Kind::signedNumber : Kind::unsignedNumber),
        number_(static_cast<std::uint64_t>(value)) {}
  Json(double value) noexcept : kind_(Kind::real), real_(value) {}
  Json(const char* text) : Json(std::string(text)) {}
  Json(std::string text) noexcept : kind_(Kind::text), text_(std::move(text)) {}
  template <typename Element>
  Json(const std::vector<Element>& elements) : kind_(Kind::array) {
    for (const Element& element : elements) push_back(element);
  }
  // Pairs that begin with a text make an object, anything else an array.
  Json(std::initializer_list<Json> parts);

  [[nodiscard]] static Json object() { return Json(Kind::object); }
  [[nodiscard]] static Json array() { return Json(Kind::array); }

  [[nodiscard]] bool isNull() const noexcept { return kind_ == Kind::null; }
  // The member of that name, made when it is missing. A null becomes an object.
  Json& operator[](std::string_view name);
  // Puts an element behind the last. A null becomes an array.
  void push_back(Json element);

  // Puts a member in front of an object's others; in an array, in front of those of each object.
  void lead(std::string_view name, const Json& value);

  // As text, indented by two characters a level. Bytes that are not UTF-8 become U+FFFD.
  [[nodiscard]] std::string dump() const;

 private:
  enum class Kind { null, truth, signedNumber, unsignedNumber, real, text, array, object };

  explicit Json(Kind kind) noexcept : kind_(kind) {}
  [[nodiscard]] bool isNamedPair() const;
  void write(std::string& out, std::size_t depth) const;
  void writeParts(std::string& out, std::size_t depth) const;

  Kind kind_ = Kind::null;
  std::uint64_t number_ = 0;
  double real_ = 0;
  std::string text_;
  std::vector<std::string> names_;  // of an object's parts
  std::vector<Json> parts_;
};

}  // namespace fiohost
