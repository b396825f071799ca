#include "fiohost/jobs/jobs_option.h"

#include <gtest/gtest.h>

#include <thread>

#include "tests/fiohost/support/files.h"

namespace fiohost {
namespace {

class JobsOption : public testing::Test {
 protected:
  unsigned countFor(const std::vector<std::string>& inputs, const std::vector<std::string>& outputs,
                    const char* asked = "7") {
    CLI::App app;
    Jobs jobs;
    jobs.declare(app);
    app.parse(std::string("--jobs ") + asked);
    std::size_t next = 0;
    return jobs.countFor(inputs, [&](const std::string&) { return outputs.at(next++); });
  }
  [[nodiscard]] std::string in(const std::string& name) const {
    return (folder_.path() / name).string();
  }

  fiohostTest::TemporaryFolder folder_;
};

TEST_F(JobsOption, WithoutItThereAreAsManyAsProcessors) {
  EXPECT_EQ(Jobs().count(), std::max(1U, std::thread::hardware_concurrency()));
}

TEST_F(JobsOption, OutputsThatAreApartAreWrittenAtATime) {
  EXPECT_EQ(countFor({"a", "b", "c"}, {"x", "y", "z"}), 7U);
}

TEST_F(JobsOption, AnOutputThatTwoInputsHaveIsWrittenInOrder) {
  EXPECT_EQ(countFor({"a", "b", "c"}, {"x", "y", "x"}), 1U);
  EXPECT_EQ(countFor({"a", "b"}, {"x", "./x"}), 1U);
}

TEST_F(JobsOption, LetterCaseIsNoDifference) { EXPECT_EQ(countFor({"a", "b"}, {"x", "X"}), 1U); }

TEST_F(JobsOption, AnOutputThatIsAnotherInputIsWrittenInOrder) {
  EXPECT_EQ(countFor({"a", "b"}, {"x", "a"}), 1U);
}

TEST_F(JobsOption, AnOutputThatIsItsOwnInputIsNoReasonForAnOrder) {
  EXPECT_EQ(countFor({"a", "b"}, {"a", "b"}), 7U);
}

TEST_F(JobsOption, OneInputHasNoOrder) { EXPECT_EQ(countFor({"a"}, {"a"}), 7U); }

#ifndef _WIN32
TEST_F(JobsOption, ALinkIsWhatItLeadsTo) {
  fiohostTest::writeBytes(in("x"), {'x'});
  std::filesystem::create_symlink(in("x"), in("link"));
  EXPECT_EQ(countFor({"a", "b"}, {in("x"), in("link")}), 1U);
}
#endif

TEST_F(JobsOption, TakesNumbersFrom1) {
  EXPECT_THROW(countFor({"a"}, {"x"}, "0"), CLI::ParseError);
  EXPECT_THROW(countFor({"a"}, {"x"}, "-1"), CLI::ParseError);
  EXPECT_THROW(countFor({"a"}, {"x"}, "many"), CLI::ParseError);
}

}  // namespace
}  // namespace fiohost
