#include "tests/fiohost/support/program_fixture.h"

namespace fiohostTest {
namespace {

using testing::HasSubstr;

class FormatsTest : public ProgramTest {};

TEST_F(FormatsTest, TellsBothFormatsInWords) {
  const ProcessResult result = run({"formats"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_THAT(result.out, HasSubstr("2 formats"));
  EXPECT_THAT(result.out, HasSubstr("0x8268"));
  EXPECT_THAT(result.out, HasSubstr("Multi-Picture Format"));
}

TEST_F(FormatsTest, TellsBothFormatsAsJson) {
  const nlohmann::json formats = runForJson({"formats", "--json"});
  ASSERT_EQ(formats.size(), 2U);
  EXPECT_EQ(formats[0]["format"], "JPEG");
  EXPECT_EQ(formats[0]["extension"], "JPG");
  EXPECT_EQ(formats[0]["formatId"], 0x8268);
  EXPECT_EQ(formats[0]["versionedFormatId"], 0x1268);
  EXPECT_EQ(formats[0]["versionAccepted"], true);
  EXPECT_EQ(formats[0]["dialogs"], true);
  EXPECT_EQ(formats[0]["signature"], "FF D8");
  EXPECT_EQ(formats[1]["format"], "MPO");
  EXPECT_EQ(formats[1]["name"], "Multi-Picture Format");
  EXPECT_EQ(formats[1]["extension"], "MPO");
  EXPECT_EQ(formats[1]["formatId"], 0x8668);
  EXPECT_EQ(formats[1]["dialogs"], false);
}

}  // namespace
}  // namespace fiohostTest
