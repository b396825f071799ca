#include "tests/mutations/watch.h"

#include <fcntl.h>
#include <unistd.h>

#include <climits>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <ctime>

// Of the sanitizers' runtime, when it is there.
extern "C" __attribute__((weak)) void __sanitizer_set_death_callback(void (*callback)());

namespace mutations {
namespace {

constexpr unsigned longestRun = 60;  // seconds
constexpr int watched[] = {SIGALRM, SIGABRT, SIGSEGV, SIGBUS, SIGFPE, SIGILL};

char nameNow[200];
char keptAs[PATH_MAX];
const unsigned char* fileNow = nullptr;
std::size_t fileSize = 0;

void tell(const char* text) {
  if (write(STDERR_FILENO, text, std::strlen(text)) < 0) return;
}

void report() {
  if (fileNow == nullptr) return;
  tell("while serving ");
  tell(nameNow);
  tell(", kept as ");
  tell(keptAs);
  tell("\n");
  const int kept = open(keptAs, O_WRONLY | O_CREAT | O_TRUNC, 0644);
  if (kept >= 0 && write(kept, fileNow, fileSize) >= 0) close(kept);
  fileNow = nullptr;
}

void onSignal(int signal) {
  if (signal == SIGALRM) tell("no end after a minute\n");
  report();
  std::signal(signal, SIG_DFL);
  raise(signal);
}

void prepareOnce() {
  static const bool prepared = [] {
    char folder[PATH_MAX - 64];
    const char* found = getcwd(folder, sizeof folder);
    std::snprintf(keptAs, sizeof keptAs, "%s/mutation-%d", found != nullptr ? found : ".",
                  static_cast<int>(getpid()));
    const bool sanitized = __sanitizer_set_death_callback != nullptr;
    if (sanitized) __sanitizer_set_death_callback(&report);
    for (const int signal : watched) {
      if (signal == SIGALRM || !sanitized) std::signal(signal, &onSignal);
    }
    return true;
  }();
  static_cast<void>(prepared);
}

double processorSeconds() {
  timespec now = {};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  constexpr double nanosecond = 1e-9;
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * nanosecond;
}

}  // namespace

Watch::Watch(const std::string& name, std::span<const unsigned char> file)
    : begun_(processorSeconds()) {
  prepareOnce();
  std::snprintf(nameNow, sizeof nameNow, "%s", name.c_str());
  fileSize = file.size();
  fileNow = file.data();
  alarm(longestRun);
}

Watch::~Watch() {
  alarm(0);
  fileNow = nullptr;
}

double Watch::seconds() const { return processorSeconds() - begun_; }

}  // namespace mutations
