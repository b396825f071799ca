#include "tests/windows/support/private_desktop.h"

#include <cstdio>
#include <string>

#include "platform/system.h"

namespace test {
namespace {

constexpr char startedMark[] = "KF_PRIVATE_DESKTOP";
constexpr int cannotStart = 3;

// Where Wine keeps desktops of a fixed size. Such a desktop is one X window, inside which windows
// open at once; on any other each waits two seconds for a window manager that is not there.
class FixedSize {
 public:
  explicit FixedSize(std::string desktop) : desktop_(std::move(desktop)) {
    if (!underWine()) return;
    static constexpr char size[] = "1280x1024";
    RegSetKeyValueA(HKEY_CURRENT_USER, key, desktop_.c_str(), REG_SZ, size, sizeof size);
  }
  FixedSize(const FixedSize&) = delete;
  FixedSize& operator=(const FixedSize&) = delete;
  ~FixedSize() {
    if (underWine()) RegDeleteKeyValueA(HKEY_CURRENT_USER, key, desktop_.c_str());
  }

 private:
  static constexpr char key[] = "Software\\Wine\\Explorer\\Desktops";

  static bool underWine() {
    return GetProcAddress(GetModuleHandleA("ntdll.dll"), "wine_get_version") != nullptr;
  }

  std::string desktop_;
};

// Ends what still runs in it when its last handle is closed.
HANDLE makeJob() {
  HANDLE job = CreateJobObjectA(nullptr, nullptr);
  JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits = {};
  limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
  SetInformationJobObject(job, JobObjectExtendedLimitInformation, &limits, sizeof limits);
  return job;
}

bool startOn(std::string desktop, PROCESS_INFORMATION& started) {
  STARTUPINFOA startup = {};
  startup.cb = sizeof startup;
  startup.lpDesktop = desktop.data();
  return CreateProcessA(nullptr, GetCommandLineA(), nullptr, nullptr, TRUE, CREATE_SUSPENDED,
                        nullptr, nullptr, &startup, &started) != FALSE;
}

int resultOf(const PROCESS_INFORMATION& process) {
  const HANDLE job = makeJob();
  AssignProcessToJobObject(job, process.hProcess);
  ResumeThread(process.hThread);
  DWORD code = cannotStart;
  WaitForSingleObject(process.hProcess, INFINITE);
  GetExitCodeProcess(process.hProcess, &code);
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  CloseHandle(job);
  return static_cast<int>(code);
}

}  // namespace

std::optional<int> runOnPrivateDesktop() {
  char mark[2] = {};
  if (GetEnvironmentVariableA(startedMark, mark, sizeof mark) != 0) return std::nullopt;
  SetEnvironmentVariableA(startedMark, "1");
  const std::string name = "kf_test_" + std::to_string(GetCurrentProcessId());
  const FixedSize fixedSize(name);
  const HDESK desktop = CreateDesktopA(name.c_str(), nullptr, nullptr, 0, GENERIC_ALL, nullptr);
  PROCESS_INFORMATION process = {};
  int result = cannotStart;
  if (desktop != nullptr && startOn(name, process)) {
    result = resultOf(process);
  } else {
    std::fprintf(stderr, "no desktop for the tests, error %lu\n", GetLastError());
  }
  if (desktop != nullptr) CloseDesktop(desktop);
  return result;
}

}  // namespace test
