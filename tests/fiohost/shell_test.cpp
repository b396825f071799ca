// What shells and readers of manuals get: help, completion, the manual page, plain output.
#include <sstream>

#include "tests/fiohost/support/mpo_fixture.h"

namespace fiohostTest {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class ShellTest : public MpoProgramTest {
 protected:
  // Every command's words, as help lists them.
  [[nodiscard]] std::vector<std::vector<std::string>> allCommands(
      const std::vector<std::string>& path = {}) const {
    std::vector<std::vector<std::string>> all;
    const std::string help = helpOf(path);
    const std::size_t list = help.find("Subcommands:");
    if (list == std::string::npos) return all;
    std::istringstream lines(help.substr(list + 12));
    for (std::string line; std::getline(lines, line);) {
      if (!line.starts_with("  ") || line.size() < 3 || line[2] == ' ') continue;
      std::vector<std::string> words = path;
      words.push_back(line.substr(2, line.find(' ', 2) - 2));
      all.push_back(words);
      for (auto& below : allCommands(words)) all.push_back(std::move(below));
    }
    return all;
  }
  [[nodiscard]] std::string helpOf(std::vector<std::string> words) const {
    words.emplace_back("--help");
    const ProcessResult result = run(words);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, "");
    return result.out;
  }
};

// The words of a line as a shell parts them; quotes stand around whole words or their ends.
std::vector<std::string> wordsOf(const std::string& line) {
  std::vector<std::string> words(1);
  bool quoted = false;
  for (const char c : line) {
    if (c == '"') {
      quoted = !quoted;
    } else if (c == ' ' && !quoted) {
      words.emplace_back();
    } else {
      words.back() += c;
    }
  }
  return words;
}

TEST_F(ShellTest, HelpBeginsWithExamplesThatAreNoMistakes) {
  std::vector<std::vector<std::string>> commands = allCommands();
  EXPECT_GT(commands.size(), 20U);
  commands.emplace_back();
  for (const auto& command : commands) {
    SCOPED_TRACE(testing::PrintToString(command));
    const std::string help = helpOf(command);
    ASSERT_THAT(help, StartsWith("Examples:\n  fiohost "));
    std::istringstream lines(help.substr(0, help.find("\n\n")));
    for (std::string line; std::getline(lines, line);) {
      if (!line.starts_with("  fiohost ")) continue;
      std::vector<std::string> words = wordsOf(line.substr(2));
      words.erase(words.begin());
      if (words.front() == "view") continue;  // it opens a window
      EXPECT_NE(run(words).exitCode, 2) << line;
    }
  }
}

TEST_F(ShellTest, TheManualPageIsMadeOfTheSameDeclarations) {
  const ProcessResult result = run({"man"});
  EXPECT_EQ(result.exitCode, 0);
  std::string page = result.out;
  page.erase(std::remove(page.begin(), page.end(), '\r'), page.end());
  EXPECT_EQ(page, readText(KF_MANUAL)) << "make it anew: fiohost man > docs/fiohost.1";
  for (const auto& command : allCommands()) {
    if (command == std::vector<std::string>{"mpo"}) continue;
    std::string heading = ".SS fiohost";
    for (const std::string& word : command) heading += " " + word;
    EXPECT_THAT(page, HasSubstr(heading + "\n"));
  }
}

TEST_F(ShellTest, CompletionNamesEveryCommandAndOption) {
  const std::string bash = run({"completion", "bash"}).out;
  const std::string powershell = run({"completion", "powershell"}).out;
  for (const auto& command : allCommands()) {
    const std::string& name = command.back();
    EXPECT_THAT(bash, HasSubstr(name));
    EXPECT_THAT(powershell, HasSubstr("'" + name + "'"));
  }
  for (const char* option : {"--keep-images", "--images", "--in-place", "--baseline", "--raw"}) {
    EXPECT_THAT(bash, HasSubstr(option));
    EXPECT_THAT(powershell, HasSubstr("'" + std::string(option) + "'"));
  }
  EXPECT_THAT(powershell, HasSubstr("'convert:--sampling' = @('444', '422', '420', '411')"));
  EXPECT_EQ(std::count(powershell.begin(), powershell.end(), '{'),
            std::count(powershell.begin(), powershell.end(), '}'));
  EXPECT_EQ(run({"completion", "tcsh"}).exitCode, 2);
}

#ifdef KF_PYTHON
TEST_F(ShellTest, BashCompletesWhatFits) {
  const std::string script = run({"completion", "bash"}).out;
  writeBytes(file("completion.bash"), Bytes(script.begin(), script.end()));
  const auto completed = [this](const std::string& words) {
    const std::string ask =
        "set -u; source completion.bash; COMP_WORDS=(" + words +
        "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _fiohost; printf '%s ' \"${COMPREPLY[@]}\"";
    const ProcessResult result = runProcess("/bin/bash", {"--norc", "-c", ask}, folder(), folder());
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.exitCode, 0);
    std::istringstream all(result.out);
    return std::vector<std::string>(std::istream_iterator<std::string>(all), {});
  };
  EXPECT_THAT(completed("fiohost con"), ElementsAre("convert"));
  EXPECT_THAT(completed("fiohost se"), ElementsAre("set", "settings"));
  EXPECT_THAT(completed("fiohost mpo re"), ElementsAre("reorder", "remove", "repair"));
  EXPECT_THAT(completed("fiohost convert --keep-i"), ElementsAre("--keep-images"));
  EXPECT_THAT(completed("fiohost convert a.jpg --sampling 42"), ElementsAre("422", "420"));
  EXPECT_THAT(completed("fiohost mpo build --kind st"), ElementsAre("stereo"));
  EXPECT_THAT(completed("fiohost mpo swap --im"), ElementsAre("--images"));
  EXPECT_THAT(completed("fiohost completion p"), ElementsAre("powershell"));
  EXPECT_THAT(completed("fiohost info pict"), ElementsAre());  // bash itself completes files
  EXPECT_THAT(completed("fiohost mpo --h"), ElementsAre("--help"));
}

TEST_F(ShellTest, GroffTakesTheManualPage) {
  const ProcessResult result = runProcess(
      "/usr/bin/groff", {"-man", "-ww", "-Tascii", "-P-c", KF_MANUAL}, folder(), folder());
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_THAT(result.out, HasSubstr("--keep-images"));
  EXPECT_THAT(result.out, HasSubstr("fiohost mpo build"));
}

TEST_F(ShellTest, ATerminalGetsNoColours) {
  addJpeg("in.jpg", {});
  const char* atTerminal =
      "import os, pty, sys\n"
      "seen = b''\n"
      "child, terminal = pty.fork()\n"
      "if child == 0: os.execv(sys.argv[1], sys.argv[1:])\n"
      "while True:\n"
      "    try: part = os.read(terminal, 1000)\n"
      "    except OSError: break\n"
      "    if not part: break\n"
      "    seen += part\n"
      "os.waitpid(child, 0)\n"
      "sys.stdout.write(seen.decode())\n";
  const std::string program = platform::displayPath(distributionFolder() / programName);
  const ProcessResult result = runProcess(
      KF_PYTHON, {"-c", atTerminal, program, "info", "in.jpg", "absent.jpg"}, folder(), folder());
  EXPECT_THAT(result.out, HasSubstr("Format        JPEG"));
  EXPECT_THAT(result.out, HasSubstr("absent.jpg: there is no such file"));
  EXPECT_THAT(result.out, Not(HasSubstr("\x1B")));
}
#endif

}  // namespace
}  // namespace fiohostTest
