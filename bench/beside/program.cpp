#include "bench/beside/program.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <stdexcept>

namespace bench {
namespace {

std::vector<char*> argumentList(const std::vector<std::string>& arguments) {
  std::vector<char*> list;
  list.reserve(arguments.size() + 1);
  for (const std::string& argument : arguments) list.push_back(const_cast<char*>(argument.c_str()));
  list.push_back(nullptr);
  return list;
}

class FileActions {
 public:
  FileActions() { posix_spawn_file_actions_init(&actions_); }
  FileActions(const FileActions&) = delete;
  FileActions& operator=(const FileActions&) = delete;
  ~FileActions() { posix_spawn_file_actions_destroy(&actions_); }

  void discard(int descriptor) {
    posix_spawn_file_actions_addopen(&actions_, descriptor, "/dev/null", O_WRONLY, 0);
  }
  void enter(const std::string& folder) {
    posix_spawn_file_actions_addchdir_np(&actions_, folder.c_str());
  }
  void connect(int from, int to) { posix_spawn_file_actions_adddup2(&actions_, from, to); }
  [[nodiscard]] const posix_spawn_file_actions_t* get() const { return &actions_; }

 private:
  posix_spawn_file_actions_t actions_;
};

pid_t start(const std::vector<std::string>& arguments, const FileActions& actions) {
  pid_t process = 0;
  const std::vector<char*> list = argumentList(arguments);
  if (posix_spawnp(&process, list[0], actions.get(), nullptr, list.data(), environ) != 0) {
    throw std::runtime_error(arguments[0] + " cannot be started");
  }
  return process;
}

}  // namespace

void runProgram(const std::vector<std::string>& arguments, const std::string& folder) {
  FileActions actions;
  actions.enter(folder);
  actions.discard(STDOUT_FILENO);
  actions.discard(STDERR_FILENO);
  const pid_t process = start(arguments, actions);
  int status = 0;
  if (waitpid(process, &status, 0) != process || !WIFEXITED(status) || WEXITSTATUS(status) == 127) {
    throw std::runtime_error(arguments[0] + " did not end by itself");
  }
}

Worker::Worker(const std::vector<std::string>& arguments) {
  std::array<int, 2> toWorker = {};
  std::array<int, 2> fromWorker = {};
  if (pipe2(toWorker.data(), O_CLOEXEC) != 0 || pipe2(fromWorker.data(), O_CLOEXEC) != 0) {
    throw std::runtime_error("no pipe can be made");
  }
  FileActions actions;
  actions.connect(toWorker[0], STDIN_FILENO);
  actions.connect(fromWorker[1], STDOUT_FILENO);
  process_ = start(arguments, actions);
  close(toWorker[0]);
  close(fromWorker[1]);
  input_ = toWorker[1];
  output_ = fromWorker[0];
}

// At the end of its input the worker ends.
Worker::~Worker() {
  close(input_);
  close(output_);
  int status = 0;
  waitpid(process_, &status, 0);
}

double Worker::work() {
  std::string answer;
  char byte = '\n';
  bool open = write(input_, &byte, 1) == 1;
  while (open && (open = read(output_, &byte, 1) == 1) && byte != '\n') answer += byte;
  if (!open) throw std::runtime_error("the program beside gives no answer");
  return std::strtod(answer.c_str(), nullptr);
}

}  // namespace bench
