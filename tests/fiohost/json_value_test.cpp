#include "fiohost/json_value.h"

#include <gtest/gtest.h>

#include <limits>
#include <nlohmann/json.hpp>

namespace fiohost {
namespace {

TEST(JsonValue, PairsThatBeginWithATextAreAnObjectInTheirOrder) {
  const Json json = {{"b", 1}, {"a", nullptr}};
  EXPECT_EQ(json.dump(), "{\n  \"b\": 1,\n  \"a\": null\n}");
}

TEST(JsonValue, AnythingElseInBracesIsAnArray) {
  EXPECT_EQ((Json{1, "two", true}.dump()), "[\n  1,\n  \"two\",\n  true\n]");
  EXPECT_EQ((Json{{1, 2}, {3, 4}}.dump()),
            "[\n  [\n    1,\n    2\n  ],\n  [\n    3,\n    4\n  ]\n]");
}

TEST(JsonValue, EmptyListsStayOnOneLine) {
  EXPECT_EQ(Json::array().dump(), "[]");
  EXPECT_EQ(Json::object().dump(), "{}");
  EXPECT_EQ(Json(std::vector<int>{}).dump(), "[]");
}

TEST(JsonValue, NullBecomesWhatIsPutIntoIt) {
  Json object;
  EXPECT_TRUE(object.isNull());
  object["x"] = 1;
  object["x"] = 2;
  object["list"].push_back("y");
  EXPECT_EQ(object.dump(), "{\n  \"x\": 2,\n  \"list\": [\n    \"y\"\n  ]\n}");
}

TEST(JsonValue, NumbersKeepTheirRangeAndKind) {
  EXPECT_EQ(Json(std::numeric_limits<std::int64_t>::min()).dump(), "-9223372036854775808");
  EXPECT_EQ(Json(std::numeric_limits<std::uint64_t>::max()).dump(), "18446744073709551615");
  EXPECT_EQ(Json(-1).dump(), "-1");
  EXPECT_EQ(Json(2.0).dump(), "2.0");
  EXPECT_EQ(Json(0.1).dump(), "0.1");
  EXPECT_EQ(Json(std::numeric_limits<double>::infinity()).dump(), "null");
  EXPECT_EQ(Json(false).dump(), "false");
}

TEST(JsonValue, TextsAreEscapedAndReadBackByAnotherReader) {
  const std::string text = "\"\\\b\f\n\r\t\x01\x7F/ \xC3\xA9 \xF0\x9F\x93\xB7";
  const std::string written = Json(text).dump();
  EXPECT_EQ(nlohmann::json::parse(written).get<std::string>(), text);
  EXPECT_EQ(written.substr(0, 13), "\"\\\"\\\\\\b\\f\\n\\r");
}

TEST(JsonValue, BytesThatAreNotUtf8BecomeReplacementCharacters) {
  const std::string replaced = "\xEF\xBF\xBD";
  EXPECT_EQ(Json("a\xFFz").dump(), "\"a" + replaced + "z\"");
  EXPECT_EQ(Json("\xC0\x80").dump(), "\"" + replaced + replaced + "\"");  // overlong
  EXPECT_EQ(Json("\xED\xA0\x80").dump(),
            "\"" + replaced + replaced + replaced + "\"");     // surrogate
  EXPECT_EQ(Json("\xE2\x82").dump(), "\"" + replaced + "\"");  // cut off
  EXPECT_EQ(Json("\xE2\x82!").dump(), "\"" + replaced + "!\"");
}

}  // namespace
}  // namespace fiohost
