#include "platform/console/console.h"

#include <fcntl.h>
#include <io.h>
#include <shellapi.h>

#include <array>
#include <cerrno>

#include "platform/console/start_folder.h"

namespace platform {
namespace {

// From here on plain paths stop working: a folder must leave room for an 8.3 name in MAX_PATH.
constexpr std::size_t longestPlainPath = MAX_PATH - 13;
constexpr std::wstring_view longPrefix = LR"(\\?\)";
constexpr std::wstring_view longSharePrefix = LR"(\\?\UNC\)";

struct FreeLocal {
  void operator()(LPWSTR* list) const noexcept { LocalFree(list); }
};

struct CloseSearch {
  void operator()(HANDLE search) const noexcept {
    if (search != INVALID_HANDLE_VALUE) FindClose(search);
  }
};

std::string narrowed(const std::wstring& text, UINT codePage, DWORD flags, BOOL* lost) {
  const int length = static_cast<int>(text.size());
  const int size =
      WideCharToMultiByte(codePage, flags, text.c_str(), length, nullptr, 0, nullptr, lost);
  std::string result(static_cast<std::size_t>(size), '\0');
  WideCharToMultiByte(codePage, flags, text.c_str(), length, result.data(), size, nullptr, lost);
  return result;
}

std::wstring widened(const std::string& text) {
  const int length = static_cast<int>(text.size());
  const int size = MultiByteToWideChar(CP_UTF8, 0, text.c_str(), length, nullptr, 0);
  std::wstring result(static_cast<std::size_t>(size), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, text.c_str(), length, result.data(), size);
  return result;
}

std::wstring absolute(const std::wstring& text) {
  const DWORD size = GetFullPathNameW(text.c_str(), 0, nullptr, nullptr);
  std::wstring result(size, L'\0');
  result.resize(GetFullPathNameW(text.c_str(), size, result.data(), nullptr));
  if (result.empty()) {
    throw std::filesystem::filesystem_error("no such path", text,
                                            std::make_error_code(std::errc::invalid_argument));
  }
  return result;
}

std::wstring withoutPrefix(const std::wstring& path) {
  if (path.starts_with(longSharePrefix)) return LR"(\\)" + path.substr(longSharePrefix.size());
  if (path.starts_with(longPrefix)) return path.substr(longPrefix.size());
  return path;
}

int errnoOfCreation() {
  switch (GetLastError()) {
    case ERROR_FILE_EXISTS:
    case ERROR_ALREADY_EXISTS:
      return EEXIST;
    case ERROR_PATH_NOT_FOUND:
    case ERROR_FILE_NOT_FOUND:
      return ENOENT;
    case ERROR_DISK_FULL:
      return ENOSPC;
    default:
      return EACCES;
  }
}

}  // namespace

std::vector<std::string> utf8Arguments(int, char**) {
  int count = 0;
  const std::unique_ptr<LPWSTR, FreeLocal> values(CommandLineToArgvW(GetCommandLineW(), &count));
  std::vector<std::string> result;
  for (int i = 1; values != nullptr && i < count; ++i) {
    result.push_back(narrowed(values.get()[i], CP_UTF8, 0, nullptr));
  }
  return result;
}

void showUtf8() { SetConsoleOutputCP(CP_UTF8); }

bool isTerminal(std::FILE* stream) { return _isatty(_fileno(stream)) != 0; }

std::filesystem::path systemPath(const std::string& text) {
  const std::wstring path = absolute(fromStartFolder(widened(text)).wstring());
  if (path.size() < longestPlainPath || path.starts_with(longPrefix)) return path;
  if (path.starts_with(LR"(\\)")) return std::wstring(longSharePrefix) + path.substr(2);
  return std::wstring(longPrefix) + path;
}

// The iterator of the standard library ends at MAX_PATH.
std::vector<std::filesystem::path> filesIn(const std::filesystem::path& folder) {
  std::vector<std::filesystem::path> files;
  WIN32_FIND_DATAW entry = {};
  const std::unique_ptr<void, CloseSearch> search(FindFirstFileW((folder / "*").c_str(), &entry));
  if (search.get() == INVALID_HANDLE_VALUE) return files;
  do {
    if ((entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0) {
      files.push_back(folder / entry.cFileName);
    }
  } while (FindNextFileW(search.get(), &entry) != FALSE);
  return files;
}

std::string displayPath(const std::filesystem::path& path) {
  return narrowed(withoutPrefix(path.wstring()), CP_UTF8, 0, nullptr);
}

std::optional<std::string> ansiPath(const std::filesystem::path& path) {
  BOOL lost = FALSE;
  std::string result = narrowed(withoutPrefix(path.wstring()), CP_ACP, WC_NO_BEST_FIT_CHARS, &lost);
  if (lost != FALSE) return std::nullopt;
  return result;
}

std::wstring widePath(const std::filesystem::path& path) { return path.wstring(); }

std::filesystem::path programFile() {
  std::wstring path(32768, L'\0');  // the longest path of the system
  path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
  return path;
}

OwnedFile createNewFile(const std::filesystem::path& path) {
  HANDLE handle = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                              FILE_ATTRIBUTE_NORMAL, nullptr);
  if (handle == INVALID_HANDLE_VALUE) {
    errno = errnoOfCreation();
    return nullptr;
  }
  const int descriptor = _open_osfhandle(reinterpret_cast<std::intptr_t>(handle), _O_BINARY);
  if (descriptor < 0) CloseHandle(handle);
  OwnedFile file(descriptor < 0 ? nullptr : _fdopen(descriptor, "wb"));
  if (file == nullptr) {
    const int error = errno;
    if (descriptor >= 0) _close(descriptor);
    DeleteFileW(path.c_str());
    errno = error;
  }
  return file;
}

HMODULE loadModule(const std::filesystem::path& path) { return LoadLibraryW(path.c_str()); }

bool hasConsoleToItself() {
  DWORD processes[2] = {};
  return GetConsoleProcessList(processes, 2) == 1 && isTerminal(stdout);
}

void leaveOwnConsole() {
  if (hasConsoleToItself()) FreeConsole();
}

unsigned long processNumber() { return GetCurrentProcessId(); }

}  // namespace platform
