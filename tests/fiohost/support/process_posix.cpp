#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/fiohost/support/files.h"
#include "tests/fiohost/support/process.h"

namespace fiohostTest {
namespace {

void redirect(const std::filesystem::path& file, int descriptor) {
  const int target = open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  dup2(target, descriptor);
}

[[noreturn]] void becomeProgram(const std::filesystem::path& program,
                                const std::vector<std::string>& arguments) {
  std::vector<char*> values = {const_cast<char*>(program.c_str())};
  for (const std::string& argument : arguments)
    values.push_back(const_cast<char*>(argument.c_str()));
  values.push_back(nullptr);
  execv(program.c_str(), values.data());
  _exit(127);
}

}  // namespace

ProcessResult runProcess(const std::filesystem::path& program,
                         const std::vector<std::string>& arguments,
                         const std::filesystem::path& folder,
                         const std::filesystem::path& captureFolder) {
  const std::filesystem::path out = captureFolder / "captured-out";
  const std::filesystem::path err = captureFolder / "captured-err";
  const pid_t child = fork();
  if (child == 0) {
    redirect(out, STDOUT_FILENO);
    redirect(err, STDERR_FILENO);
    if (chdir(folder.c_str()) != 0) _exit(126);
    becomeProgram(program, arguments);
  }
  int status = 0;
  waitpid(child, &status, 0);
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, readText(out), readText(err)};
}

}  // namespace fiohostTest
