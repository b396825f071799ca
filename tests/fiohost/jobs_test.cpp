// Several files at a time: the same results in the same order as one after another.
#include "platform/system.h"
#include "tests/fiohost/support/program_fixture.h"

namespace fiohostTest {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class JobsTest : public ProgramTest {
 protected:
  void SetUp() override { SetEnvironmentVariableA("KFIO_INI", "own/settings.ini"); }

  // Pictures of sizes that all differ, the larger ones first, with files between them that are
  // missing or no pictures.
  std::vector<std::string> addFiles() {
    std::filesystem::create_directory(file("own"));
    std::vector<std::string> names;
    for (unsigned i = 0; i < 12; ++i) {
      names.push_back("file" + std::to_string(i) + ".jpg");
      if (i == 5) writeBytes(file(names.back()), {'t', 'e', 'x', 't'});
      if (i % 4 != 1) addJpeg(names.back(), {.width = 700 - 50 * i, .height = 40 + i});
    }
    return names;
  }
  [[nodiscard]] ProcessResult runWith(const char* jobs, std::vector<std::string> arguments,
                                      const std::vector<std::string>& files) const {
    arguments.insert(arguments.end(), {"--jobs", jobs});
    arguments.insert(arguments.end(), files.begin(), files.end());
    return run(arguments);
  }
  // Runs a command both ways; the results must be the same. Returns them.
  ProcessResult expectSame(const std::vector<std::string>& arguments,
                           const std::vector<std::string>& files) const {
    const ProcessResult alone = runWith("1", arguments, files);
    ProcessResult together = runWith("4", arguments, files);
    EXPECT_EQ(together.out, alone.out);
    EXPECT_EQ(together.err, alone.err);
    EXPECT_EQ(together.exitCode, alone.exitCode);
    return together;
  }
};

Bytes text(std::string_view content) { return {content.begin(), content.end()}; }

// The places of the names in a text, in the order given; none may be missing.
void expectInOrder(const std::string& text, const std::vector<std::string>& names) {
  std::size_t place = 0;
  for (const std::string& name : names) {
    const std::size_t found = text.find(name, place);
    ASSERT_NE(found, std::string::npos) << name;
    place = found;
  }
}

TEST_F(JobsTest, ResultsAndFailuresAreToldInTheFilesOrder) {
  const std::vector<std::string> files = addFiles();
  const ProcessResult result = expectSame({"info"}, files);
  EXPECT_EQ(result.exitCode, 1);
  expectInOrder(result.out, {"file0.jpg", "file2.jpg", "file3.jpg", "file4.jpg", "file6.jpg",
                             "file7.jpg", "file8.jpg", "file10.jpg", "file11.jpg"});
  expectInOrder(result.err, {"file1.jpg: there is no such file", "file5.jpg: the header cannot",
                             "file9.jpg: there is no such file"});
}

TEST_F(JobsTest, AnArrayHasEveryFileInItsPlace) {
  const std::vector<std::string> files = addFiles();
  const ProcessResult result = expectSame({"info", "--json"}, files);
  EXPECT_EQ(result.exitCode, 1);
  const nlohmann::json all = nlohmann::json::parse(result.out);
  ASSERT_EQ(all.size(), files.size());
  for (std::size_t i = 0; i < files.size(); ++i) {
    EXPECT_EQ(all[i]["file"], files[i]);
    EXPECT_EQ(all[i].contains("error"), i % 4 == 1) << i;
  }
  EXPECT_EQ(result.out, nlohmann::ordered_json::parse(result.out).dump(2) + "\n");
}

TEST_F(JobsTest, PropertiesAreListedInTheFilesOrder) {
  EXPECT_EQ(expectSame({"properties"}, addFiles()).exitCode, 1);
}

TEST_F(JobsTest, AllGoodIsSuccess) {
  addJpeg("a.jpg", {});
  addJpeg("b.jpg", {.width = 30});
  const ProcessResult result = expectSame({"info"}, {"b.jpg", "a.jpg"});
  EXPECT_EQ(result.exitCode, 0);
  expectInOrder(result.out, {"b.jpg", "a.jpg"});
}

TEST_F(JobsTest, RelativeNamesMeanTheFolderThatTheProgramWasStartedIn) {
  const std::vector<std::string> files = addFiles();
  writeBytes(file("own/settings.ini"), text("[KF_IJPG]\nMode=1\n"));
  std::filesystem::create_directory(file("out"));
  EXPECT_EQ(runWith("4", {"convert", "-o", "out"}, files).exitCode, 1);
  EXPECT_EQ(namesIn(file("out")).size(), 9U);
  const nlohmann::json info = runForJson({"info", "--json", "out/file0.jpg", "out/file11.jpg"});
  EXPECT_EQ(info[0]["width"], 700);
  EXPECT_EQ(info[1]["width"], 150);
  // The settings' name is relative as well.
  EXPECT_EQ(info[0]["encoding"], "progressive");
  EXPECT_EQ(info[1]["encoding"], "progressive");
}

TEST_F(JobsTest, PicturesAreDecodedAsOneAfterAnother) {
  const std::vector<std::string> files = addFiles();
  const ProcessResult result = runWith("4", {"show"}, files);
  EXPECT_EQ(result.exitCode, 1);
  for (const unsigned i : {0U, 2U, 11U}) {
    const std::string stem = "file" + std::to_string(i);
    EXPECT_EQ(png(stem + ".png"), decodeJpeg(readBytes(file(stem + ".jpg")))) << stem;
  }
  for (const std::string& name : namesIn(folder())) EXPECT_NE(name[0], '.') << name;
}

TEST_F(JobsTest, OfTwoFilesWithOneOutputTheFirstIsWritten) {
  std::filesystem::create_directory(file("large"));
  std::filesystem::create_directory(file("small"));
  std::filesystem::create_directory(file("out"));
  addJpeg("large/a.jpg", {.width = 1600, .height = 1200});
  addJpeg("small/a.jpg", {.width = 16, .height = 16});
  const ProcessResult result =
      runWith("2", {"convert", "-o", "out"}, {"large/a.jpg", "small/a.jpg"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, HasSubstr("small/a.jpg: "));
  EXPECT_EQ(runForJson({"info", "--json", "out/a.jpg"})[0]["width"], 1600);
}

TEST_F(JobsTest, FilesOfOneNameAreShownUnderNamesInTheirOrder) {
  std::filesystem::create_directory(file("large"));
  std::filesystem::create_directory(file("small"));
  addJpeg("large/a.jpg", {.width = 1600, .height = 1200});
  addJpeg("small/a.jpg", {.width = 16, .height = 16});
  EXPECT_EQ(runWith("2", {"show"}, {"large/a.jpg", "small/a.jpg"}).exitCode, 0);
  EXPECT_EQ(png("a.png").width, 1600U);
  EXPECT_EQ(png("a-2.png").width, 16U);
}

TEST_F(JobsTest, ImagesOfSeveralMultiPictureFilesDoNotMeet) {
  std::filesystem::create_directory(file("own"));
  std::vector<std::string> files;
  for (unsigned i = 0; i < 6; ++i) {
    addJpeg("first.jpg", {.width = 100 + i, .height = 20});
    addJpeg("second.jpg", {.width = 200 + i, .height = 20});
    files.push_back("file" + std::to_string(i) + ".mpo");
    ASSERT_EQ(
        run({"mpo", "build", "-o", files.back(), "--kind", "stereo", "first.jpg", "second.jpg"})
            .exitCode,
        0);
  }
  EXPECT_EQ(expectSame({"properties", "--image", "2", "--json"}, files).exitCode, 0);
  EXPECT_EQ(expectSame({"mpo", "info"}, files).exitCode, 0);
}

TEST_F(JobsTest, ANumberOfJobsIsAtLeast1) {
  addJpeg("a.jpg", {});
  EXPECT_EQ(run({"info", "--jobs", "0", "a.jpg"}).exitCode, 2);
}

}  // namespace
}  // namespace fiohostTest
