// The built program, run in a fresh folder.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "platform/console/console.h"
#include "tests/fiohost/support/files.h"
#include "tests/fiohost/support/pictures.h"
#include "tests/fiohost/support/process.h"

namespace fiohostTest {

// Where the build lays out the program with its libraries.
inline std::filesystem::path distributionFolder() {
  return platform::programFile().parent_path().parent_path().parent_path() / "dist";
}

inline const std::string programName =
    "fiohost" + platform::displayPath(platform::programFile().extension());

class ProgramTest : public testing::Test {
 protected:
  [[nodiscard]] std::filesystem::path folder() const { return folder_.path(); }
  [[nodiscard]] std::filesystem::path file(const std::string& name) const {
    return platform::systemPath(platform::displayPath(folder()) + "/" + name);
  }

  [[nodiscard]] ProcessResult run(const std::vector<std::string>& arguments) const {
    return runProcess(distributionFolder() / programName, arguments, folder(), captures_.path());
  }
  // The parsed standard output of a run that must succeed.
  [[nodiscard]] nlohmann::json runForJson(const std::vector<std::string>& arguments) const {
    const ProcessResult result = run(arguments);
    EXPECT_EQ(result.exitCode, 0) << result.err;
    return nlohmann::json::parse(result.out);
  }

  void addJpeg(const std::string& name, const JpegSpec& spec) const {
    writeBytes(file(name), makeJpeg(spec));
  }
  [[nodiscard]] Pixels png(const std::string& name) const {
    return decodePng(readBytes(file(name)));
  }

 private:
  TemporaryFolder folder_;
  TemporaryFolder captures_;
};

}  // namespace fiohostTest
