// The picture window where there are no windows.
#include "tests/fiohost/support/program_fixture.h"

namespace fiohostTest {
namespace {

using ViewNativeTest = ProgramTest;

TEST_F(ViewNativeTest, ShowingPicturesIsAUsageError) {
  addJpeg("a.jpg", {});
  const ProcessResult result = run({"view", "a.jpg"});
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_EQ(result.err, "fiohost: view: this build has no windows; use the Windows build\n");
  EXPECT_EQ(result.out, "");
}

TEST_F(ViewNativeTest, FilesAloneAreNoCommand) {
  addJpeg("a.jpg", {});
  EXPECT_EQ(run({"a.jpg"}).exitCode, 2);
}

}  // namespace
}  // namespace fiohostTest
