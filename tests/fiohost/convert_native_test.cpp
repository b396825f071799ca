// Saving anew where there are no windows.
#include "tests/fiohost/support/program_fixture.h"

namespace fiohostTest {
namespace {

using ConvertNativeTest = ProgramTest;

TEST_F(ConvertNativeTest, AskingForTheOptionsIsAUsageError) {
  addJpeg("in.jpg", {});
  const ProcessResult result = run({"convert", "in.jpg", "-o", "out.jpg", "--options"});
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_THAT(result.err, testing::HasSubstr("--options: this build of the plug-in has no windows; "
                                             "use the Windows build"));
  EXPECT_EQ(result.out, "");
  EXPECT_FALSE(std::filesystem::exists(file("out.jpg")));
}

}  // namespace
}  // namespace fiohostTest
