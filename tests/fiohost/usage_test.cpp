#include "tests/fiohost/support/program_fixture.h"

namespace fiohostTest {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

struct UsageCase {
  const char* name;
  std::vector<std::string> arguments;
};

class UsageTest : public ProgramTest, public testing::WithParamInterface<UsageCase> {};

TEST_P(UsageTest, IsAUsageError) {
  const ProcessResult result = run(GetParam().arguments);
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_NE(result.err, "");
  EXPECT_EQ(result.out, "");
  EXPECT_THAT(namesIn(folder()), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Mistakes, UsageTest,
    testing::Values(UsageCase{"noCommand", {}}, UsageCase{"unknownCommand", {"frobnicate"}},
                    UsageCase{"noFile", {"info"}}, UsageCase{"unknownOption", {"info", "--x", "a"}},
                    UsageCase{"noOutput", {"read", "a.jpg"}},
                    UsageCase{"twoInputs", {"read", "a.jpg", "b.jpg", "-o", "o.png"}},
                    UsageCase{"unknownExtension", {"read", "a.jpg", "-o", "o.gif"}},
                    UsageCase{"noExtension", {"read", "a.jpg", "-o", "png"}},
                    UsageCase{"fitWord", {"read", "a.jpg", "-o", "o.png", "--fit", "big"}},
                    UsageCase{"fitHalf", {"read", "a.jpg", "-o", "o.png", "--fit", "10x"}},
                    UsageCase{"fitZero", {"read", "a.jpg", "-o", "o.png", "--fit", "0x10"}},
                    UsageCase{"fitTail", {"read", "a.jpg", "-o", "o.png", "--fit", "9x9x9"}}),
    [](const auto& each) { return each.param.name; });

using VersionTest = ProgramTest;

TEST_F(VersionTest, IsThatOfTheProject) {
  const ProcessResult result = run({"--version"});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(result.out, "fiohost " KF_VERSION "\n");
}

class ProgramSetupTest : public ProgramTest {
 protected:
  // Runs a copy of the distribution that lacks one file.
  [[nodiscard]] ProcessResult runWithout(const std::string& missing) {
    const std::filesystem::path copy = folder() / "copy";
    std::filesystem::copy(distributionFolder(), copy, std::filesystem::copy_options::recursive);
    EXPECT_TRUE(std::filesystem::remove(copy / missing));
    return runProcess(copy / programName, {"formats"}, folder(), folder());
  }
};

TEST_F(ProgramSetupTest, HelpIsNoError) {
  const ProcessResult result = run({"--help"});
  EXPECT_EQ(result.exitCode, 0);
  for (const char* command : {"formats", "info", "read", "show"}) {
    EXPECT_THAT(result.out, HasSubstr(command));
  }
}

class MissingLibraryTest : public ProgramSetupTest,
                           public testing::WithParamInterface<const char*> {};

TEST_P(MissingLibraryTest, IsOneLineWithThePathLookedFor) {
  const ProcessResult result = runWithout(std::string("fio/") + GetParam());
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_THAT(result.err, HasSubstr("is missing"));
  const std::filesystem::path looked = folder() / "copy" / "fio" / GetParam();
  EXPECT_THAT(result.err, HasSubstr(platform::displayPath(looked)));
  EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1);
}

INSTANTIATE_TEST_SUITE_P(Libraries, MissingLibraryTest,
                         testing::Values("K32JPG.FIO", "klibjpg.dll", "kExifLib.dll",
                                         "kFioUtil.dll", "k32Comm.dll"),
                         [](const auto& each) {
                           std::string name = each.param;
                           return name.substr(0, name.find('.'));
                         });

TEST_F(ProgramSetupTest, WithoutResourcesThePluginDoesNotLoad) {
  const ProcessResult result = runWithout("KFRES.DLL");
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, HasSubstr("K32JPG.FIO cannot be loaded"));
  EXPECT_THAT(result.err, HasSubstr("KFRES.DLL"));
}

}  // namespace
}  // namespace fiohostTest
