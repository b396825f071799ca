#include <memory>
#include <stdexcept>
#include <string>

#include "platform/system.h"
#include "tests/fiohost/support/files.h"
#include "tests/fiohost/support/process.h"

namespace fiohostTest {
namespace {

struct CloseTheHandle {
  using pointer = HANDLE;
  void operator()(HANDLE handle) const noexcept { CloseHandle(handle); }
};
using Handle = std::unique_ptr<HANDLE, CloseTheHandle>;

std::wstring wide(const std::string& text) {
  return std::filesystem::path(std::u8string(text.begin(), text.end())).wstring();
}

// Quoted so that the C run-time's splitting gives the argument back.
std::wstring quoted(const std::wstring& argument) {
  std::wstring result = L"\"";
  std::size_t backslashes = 0;
  for (const wchar_t letter : argument) {
    if (letter == L'"') result.append(backslashes + 1, L'\\');
    backslashes = letter == L'\\' ? backslashes + 1 : 0;
    result += letter;
  }
  result.append(backslashes, L'\\');
  return result + L"\"";
}

Handle inheritableFile(const std::filesystem::path& path) {
  SECURITY_ATTRIBUTES inherit = {sizeof inherit, nullptr, TRUE};
  return Handle(CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inherit, CREATE_ALWAYS,
                            FILE_ATTRIBUTE_NORMAL, nullptr));
}

// Wine answers an internal error about once in three thousand starts, before the program has begun.
bool startProcess(std::wstring& commandLine, const std::filesystem::path& folder,
                  STARTUPINFOW& startup, PROCESS_INFORMATION& process) {
  for (int attempts = 3; attempts > 0; --attempts) {
    if (CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, TRUE, 0, nullptr,
                       folder.c_str(), &startup, &process) != FALSE) {
      return true;
    }
    if (GetLastError() != ERROR_INTERNAL_ERROR) return false;
  }
  return false;
}

int runToEnd(std::wstring commandLine, const std::filesystem::path& folder, HANDLE out,
             HANDLE err) {
  STARTUPINFOW own = {};
  GetStartupInfoW(&own);
  STARTUPINFOW startup = {};
  startup.cb = sizeof startup;
  startup.lpDesktop = own.lpDesktop;  // tests of windows run on a desktop of their own
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdOutput = out;
  startup.hStdError = err;
  PROCESS_INFORMATION process = {};
  if (!startProcess(commandLine, folder, startup, process)) {
    throw std::runtime_error("the test cannot start a program: error " +
                             std::to_string(GetLastError()));
  }
  const Handle thread(process.hThread);
  const Handle running(process.hProcess);
  WaitForSingleObject(running.get(), INFINITE);
  DWORD code = 0;
  GetExitCodeProcess(running.get(), &code);
  return static_cast<int>(code);
}

}  // namespace

ProcessResult runProcess(const std::filesystem::path& program,
                         const std::vector<std::string>& arguments,
                         const std::filesystem::path& folder,
                         const std::filesystem::path& captureFolder) {
  const std::filesystem::path out = captureFolder / "captured-out";
  const std::filesystem::path err = captureFolder / "captured-err";
  std::wstring commandLine = quoted(program.wstring());
  for (const std::string& argument : arguments) commandLine += L" " + quoted(wide(argument));
  int code = 0;
  {
    const Handle outFile = inheritableFile(out);
    const Handle errFile = inheritableFile(err);
    code = runToEnd(commandLine, folder, outFile.get(), errFile.get());
  }
  return {code, readText(out), readText(err)};
}

}  // namespace fiohostTest
