// Every command that writes, on a machine that fails at every point: it ends with an exit code, an
// output that was there stays whole, and no temporary file is left.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <optional>

#include "fiohost/program.h"
#include "tests/fault/machine.h"
#include "tests/fault/scratch.h"

namespace fault {
namespace {

struct CommandCase {
  const char* name;
  std::vector<std::string> words;  // "@x" stands for the file x of the scratch folder
  std::string output;
};

void PrintTo(const CommandCase& command, std::ostream* out) { *out << command.name; }

// What the program prints goes nowhere while this lives.
class Silence {
 public:
  Silence() : out_(dup(STDOUT_FILENO)), error_(dup(STDERR_FILENO)) {
    std::fflush(nullptr);
    const int nothing = ::open("/dev/null", O_WRONLY);
    dup2(nothing, STDOUT_FILENO);
    dup2(nothing, STDERR_FILENO);
    close(nothing);
  }
  Silence(const Silence&) = delete;
  Silence& operator=(const Silence&) = delete;
  ~Silence() {
    std::fflush(nullptr);
    dup2(out_, STDOUT_FILENO);
    dup2(error_, STDERR_FILENO);
    close(out_);
    close(error_);
  }

 private:
  int out_;
  int error_;
};

class Commands : public testing::TestWithParam<std::tuple<CommandCase, Resource, Extent>> {
 protected:
  Commands() {
    setenv("KFIO_INI", scratch_.file("settings.ini").c_str(), 1);
    scratch_.write("in.jpg", picture());
    scratch_.write("other.jpg", support::JpegBuilder().size(40, 24).build());
    scratch_.write("in.mpo", multiPicture());
  }

  std::vector<std::string> arguments(const CommandCase& command) const {
    std::vector<std::string> words;
    for (const std::string& word : command.words) {
      words.push_back(word.starts_with('@') ? scratch_.file(word.substr(1)) : word);
    }
    return words;
  }

  Scratch scratch_;
};

TEST_P(Commands, LeaveTheOldOutputWholeAndNoTemporaryFile) {
  const auto& [command, resource, extent] = GetParam();
  const Bytes before = support::bytesOf("what was there before");
  const std::vector<std::string> words = arguments(command);
  std::vector<std::string> names;
  std::vector<std::string> passed;
  std::optional<Silence> silence;
  const Operation operation = {command.name,
                               [&] {
                                 scratch_.write(command.output, before);
                                 scratch_.write("settings.ini", support::bytesOf("[kfio]\r\n"));
                                 names = scratch_.names();
                                 passed = words;
                                 silence.emplace();
                               },
                               [&] { return fiohost::runProgram(std::move(passed)) == 0; },
                               [&](bool succeeded) {
                                 silence.reset();
                                 EXPECT_EQ(scratch_.names(), names);
                                 const bool old = scratch_.read(command.output) == before;
                                 EXPECT_NE(old, succeeded);
                               }};
  failEverywhere(operation, resource, extent);
}

INSTANTIATE_TEST_SUITE_P(
    AllThatWrite, Commands,
    testing::Combine(
        testing::Values(
            CommandCase{"convert", {"convert", "@in.jpg", "-o", "@out.jpg", "--force"}, "out.jpg"},
            CommandCase{"read", {"read", "@in.jpg", "-o", "@out.png"}, "out.png"},
            CommandCase{
                "heap",
                {"heap", "@in.jpg", "--set", "Image file name=A.JPG", "-o", "@out.jpg", "--force"},
                "out.jpg"},
            CommandCase{"extract",
                        {"properties", "@in.jpg", "--extract", "icc", "-o", "@out.icc"},
                        "out.icc"},
            CommandCase{"mpo_build",
                        {"mpo", "build", "-o", "@out.mpo", "@in.jpg", "@other.jpg", "--kind",
                         "stereo", "--force"},
                        "out.mpo"}),
        testing::Values(Resource::globalMemory, Resource::files),
        testing::Values(Extent::once, Extent::everAfter)),
    [](const auto& chosen) {
      std::string name = std::get<0>(chosen.param).name;
      name += std::get<1>(chosen.param) == Resource::files ? "_files" : "_memory";
      return name + (std::get<2>(chosen.param) == Extent::once ? "_once" : "_ever_after");
    });

}  // namespace
}  // namespace fault
