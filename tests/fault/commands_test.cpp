// Every command that writes, on a machine that fails at every point: it ends with an exit code,
// what it reports as done is what a machine in order makes, what was there before is whole
// otherwise, and no temporary file is left.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>

#include "fiohost/program.h"
#include "tests/fault/machine.h"
#include "tests/fault/scratch.h"

namespace fault {
namespace {

constexpr const char* failsFromTheStart = "settings";

struct CommandCase {
  const char* name;
  std::vector<std::string> words;  // "@x" stands for the file x of the scratch folder
  std::vector<std::string> outputs;
};

void PrintTo(const CommandCase& command, std::ostream* out) { *out << command.name; }

// What the program prints goes nowhere while this lives.
class Silence {
 public:
  Silence() : out_(dup(STDOUT_FILENO)), error_(dup(STDERR_FILENO)) {
    const Exempt exempt;
    std::fflush(nullptr);
    const int nothing = ::open("/dev/null", O_WRONLY);
    dup2(nothing, STDOUT_FILENO);
    dup2(nothing, STDERR_FILENO);
    close(nothing);
  }
  Silence(const Silence&) = delete;
  Silence& operator=(const Silence&) = delete;
  ~Silence() {
    const Exempt exempt;
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

using Case = std::tuple<CommandCase, Resource, Extent>;

class Commands : public testing::TestWithParam<Case> {
 protected:
  Commands() {
    setenv("KFIO_INI", scratch_.file("settings.ini").c_str(), 1);
    const Silence silence;
    reset();
    EXPECT_EQ(fiohost::runProgram(arguments()), 0) << "on a machine in order";
    done_ = scratch_.content();
    reset();
    before_ = scratch_.content();
  }
  ~Commands() override { std::filesystem::current_path("/"); }

  [[nodiscard]] const CommandCase& command() const { return std::get<0>(GetParam()); }

  void reset() const {
    scratch_.clear();
    scratch_.write("in.jpg", picture());
    scratch_.write("other.jpg", support::JpegBuilder().size(40, 24).build());
    scratch_.write("in.mpo", multiPicture(2));
    scratch_.write("three.mpo", multiPicture(3));
    scratch_.write("stale.mpo", staleMultiPicture());
    scratch_.write("settings.ini", support::bytesOf("[kfio]\r\n"));
    for (const std::string& name : command().outputs) {
      if (name != "settings.ini") scratch_.write(name, support::bytesOf("what was there before"));
    }
    std::filesystem::current_path(scratch_.file("."));
  }

  [[nodiscard]] std::vector<std::string> arguments() const {
    std::vector<std::string> words;
    for (const std::string& word : command().words) {
      words.push_back(word.starts_with('@') ? scratch_.file(word.substr(1)) : word);
    }
    return words;
  }

  // Several outputs appear one by one. Telling the result takes memory too, and is done when the
  // output is there already: then it is whole, but the exit code says that something failed.
  [[nodiscard]] bool mayBeDoneAfterFailure() const {
    return command().outputs.size() > 1 || std::get<1>(GetParam()) == Resource::heap;
  }

  void check(bool succeeded) const {
    const Scratch::Content after = scratch_.content();
    if (succeeded) {
      EXPECT_TRUE(after == done_) << "success without the whole result: "
                                  << Scratch::difference(after, done_);
    } else if (!mayBeDoneAfterFailure()) {
      EXPECT_TRUE(after == before_)
          << "what was there before is not whole: " << Scratch::difference(after, before_);
    } else {
      expectEachWhole(after);
    }
  }

  void expectEachWhole(const Scratch::Content& after) const {
    for (const auto& [name, bytes] : after) {
      const auto old = before_.find(name);
      const auto complete = done_.find(name);
      EXPECT_TRUE((old != before_.end() && old->second == bytes) ||
                  (complete != done_.end() && complete->second == bytes))
          << name;
    }
  }

  Scratch scratch_;
  Scratch::Content before_;
  Scratch::Content done_;
};

// Every command begins with the declarations of all, so what these use fails for one of them only.
// A command line that says nothing ends behind them.
std::size_t usesOfDeclarations() {
  constexpr auto never = static_cast<std::size_t>(-1);
  const Silence silence;
  const Fault none(Resource::heap, never, Extent::once);
  fiohost::runProgram({});
  return none.uses();
}

TEST_P(Commands, SucceedWholeOrLeaveEverythingAsItWas) {
  const auto& [command, resource, extent] = GetParam();
  std::vector<std::string> passed;
  Operation operation = {command.name,
                         [&] {
                           reset();
                           passed = arguments();
                         },
                         [&] {
                           const Silence silence;
                           return fiohost::runProgram(std::move(passed)) == 0;
                         },
                         [&](bool succeeded) { check(succeeded); }};
  operation.ownProcess = resource == Resource::heap;
  if (operation.ownProcess && command.name != std::string_view(failsFromTheStart)) {
    operation.firstUse = usesOfDeclarations();
  }
  failEverywhere(operation, resource, extent);
}

const CommandCase commands[] = {
    {failsFromTheStart, {"settings", "Quality=70"}, {"settings.ini"}},
    {"convert", {"convert", "@in.jpg", "-o", "@out.jpg", "--force"}, {"out.jpg"}},
    {"read", {"read", "@in.jpg", "-o", "@out.png"}, {"out.png"}},
    {"read_fit", {"read", "@in.jpg", "-o", "@out.ppm", "--fit", "13x13"}, {"out.ppm"}},
    {"show", {"show", "@in.jpg", "--force"}, {"in.png"}},
    {"set",
     {"set", "@in.jpg", "Artist=A", "Keywords=sea", "-o", "@out.jpg", "--force"},
     {"out.jpg"}},
    {"heap",
     {"heap", "@in.jpg", "--set", "Image file name=A.JPG", "-o", "@out.jpg", "--force"},
     {"out.jpg"}},
    {"extract", {"properties", "@in.jpg", "--extract", "icc", "-o", "@out.icc"}, {"out.icc"}},
    {"extract_thumbnail",
     {"properties", "@in.jpg", "--extract", "thumbnail", "-o", "@out.jpg"},
     {"out.jpg"}},
    {"mpo_extract", {"mpo", "extract", "@in.mpo", "-o", "@.", "--force"}, {"in-1.png", "in-2.png"}},
    {"mpo_extract_jpeg",
     {"mpo", "extract", "@in.mpo", "-o", "@.", "--jpeg", "--force"},
     {"in-1.jpg", "in-2.jpg"}},
    {"mpo_build",
     {"mpo", "build", "-o", "@out.mpo", "@in.jpg", "@other.jpg", "--kind", "stereo", "--force"},
     {"out.mpo"}},
    {"mpo_reorder",
     {"mpo", "reorder", "@in.mpo", "--order", "2,1", "-o", "@out.mpo", "--force"},
     {"out.mpo"}},
    {"mpo_swap", {"mpo", "swap", "@in.mpo", "-o", "@in.mpo", "--force"}, {}},
    {"mpo_remove",
     {"mpo", "remove", "@three.mpo", "--images", "2", "-o", "@out.mpo", "--force"},
     {"out.mpo"}},
    {"mpo_insert",
     {"mpo", "insert", "@in.mpo", "@other.jpg", "--at", "2", "-o", "@out.mpo", "--force"},
     {"out.mpo"}},
    {"mpo_repair", {"mpo", "repair", "@stale.mpo", "-o", "@out.mpo", "--force"}, {"out.mpo"}},
    {"strip_gps", {"strip", "@in.jpg", "--gps", "-o", "@out.jpg", "--force"}, {"out.jpg"}},
    {"strip_all", {"strip", "@in.mpo", "--all", "-o", "@out.mpo", "--force"}, {"out.mpo"}},
    {"strip_in_place", {"strip", "@in.jpg", "--gps", "--in-place"}, {}},
    {"convert_keep_images",
     {"convert", "@in.mpo", "-o", "@out.mpo", "--keep-images", "--force"},
     {"out.mpo"}},
};

std::string nameOfCase(const testing::TestParamInfo<Case>& chosen) {
  const auto& [command, resource, extent] = chosen.param;
  std::string name = std::string(command.name) + "_" + nameOf(resource) +
                     (extent == Extent::once ? "_once" : "_ever_after");
  std::replace(name.begin(), name.end(), ' ', '_');
  return name;
}

INSTANTIATE_TEST_SUITE_P(AllThatWrite, Commands,
                         testing::Combine(testing::ValuesIn(commands),
                                          testing::Values(Resource::globalMemory, Resource::heap,
                                                          Resource::files, Resource::calls,
                                                          Resource::events),
                                          testing::Values(Extent::once, Extent::everAfter)),
                         &nameOfCase);

}  // namespace
}  // namespace fault
