// What a console program needs of the system: arguments, terminal, path names, new files, modules.
// Text is UTF-8 on every system; paths are absolute in the form that the system takes at any
// length.
#pragma once

#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/system.h"

namespace platform {

// The arguments behind the program's name.
[[nodiscard]] std::vector<std::string> utf8Arguments(int count, char** values);

// Makes a console show the UTF-8 that the program prints. Pipes and files are not concerned.
void showUtf8();

[[nodiscard]] bool isTerminal(std::FILE* stream);

// The absolute path that text names, with the system's prefix for long paths where it needs one.
// Throws std::filesystem::filesystem_error when there is no such path.
[[nodiscard]] std::filesystem::path systemPath(const std::string& text);

// The files of a folder, without folders; none of one that cannot be read. Full paths.
[[nodiscard]] std::vector<std::filesystem::path> filesIn(const std::filesystem::path& folder);

// A path for people: UTF-8, without a prefix.
[[nodiscard]] std::string displayPath(const std::filesystem::path& path);

// The path in the system's ANSI code page, or nothing when a character has no place in it.
[[nodiscard]] std::optional<std::string> ansiPath(const std::filesystem::path& path);

// The path as wide text. Natively bytes that are not UTF-8 travel as U+DC80 to U+DCFF.
[[nodiscard]] std::wstring widePath(const std::filesystem::path& path);

// The full path of the running program's file.
[[nodiscard]] std::filesystem::path programFile();

struct CloseFile {
  void operator()(std::FILE* file) const noexcept { std::fclose(file); }
};
using OwnedFile = std::unique_ptr<std::FILE, CloseFile>;

// A new file open for writing bytes; null with errno set, EEXIST when the name is taken. No file is
// left when there is none to answer.
[[nodiscard]] OwnedFile createNewFile(const std::filesystem::path& path);

// Loads the library at a full path; null when it is not there or refuses to load.
[[nodiscard]] HMODULE loadModule(const std::filesystem::path& path);

// Whether programs of this system's build open windows.
#ifdef _WIN32
inline constexpr bool showsWindows = true;
#else
inline constexpr bool showsWindows = false;
#endif

// Whether the system opened a console for this program alone, as for a double click, and its output
// goes there: no shell waits behind it.
[[nodiscard]] bool hasConsoleToItself();

// Closes such a console, for a program that has a window instead.
void leaveOwnConsole();

// A number that no other running process has.
[[nodiscard]] unsigned long processNumber();

}  // namespace platform
