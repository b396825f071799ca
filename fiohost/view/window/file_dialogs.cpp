#include "fiohost/view/window/file_dialogs.h"

#include <commdlg.h>
#include <shellapi.h>

#include "platform/console/console.h"
#include "platform/wide_text.h"

namespace fiohost::view {
namespace {

constexpr std::size_t longestPath = 32768;
constexpr std::size_t manyFiles = 16 * longestPath;

constexpr wchar_t openFilter[] =
    L"Pictures (*.jpg, *.mpo)\0*.jpg;*.jpeg;*.jpe;*.jfif;*.mpo\0All files\0*.*\0";
constexpr wchar_t saveFilter[] =
    L"JPEG pictures (*.jpg, *.mpo)\0*.jpg;*.jpeg;*.jpe;*.jfif;*.mpo\0All files\0*.*\0";

OPENFILENAMEW dialogFor(HWND owner, std::vector<wchar_t>& names, const std::wstring& folder) {
  OPENFILENAMEW dialog = {};
  dialog.lStructSize = sizeof dialog;
  dialog.hwndOwner = owner;
  dialog.lpstrFile = names.data();
  dialog.nMaxFile = static_cast<DWORD>(names.size());
  dialog.lpstrInitialDir = folder.c_str();
  dialog.lpstrDefExt = L"jpg";
  // The plug-in changes the current folder for the time of a read.
  dialog.Flags = OFN_EXPLORER | OFN_NOCHANGEDIR | OFN_HIDEREADONLY;
  return dialog;
}

// One file as a full name; several as a folder and names, each ended by a zero, and one more.
std::vector<std::string> filesIn(const std::vector<wchar_t>& names) {
  std::vector<std::filesystem::path> parts;
  for (const wchar_t* at = names.data(); *at != L'\0'; at += std::wcslen(at) + 1) {
    parts.emplace_back(at);
  }
  if (parts.size() == 1) return {platform::displayPath(parts.front())};
  std::vector<std::string> files;
  for (std::size_t i = 1; i < parts.size(); ++i) {
    files.push_back(platform::displayPath(parts.front() / parts[i]));
  }
  return files;
}

}  // namespace

std::vector<std::string> askFilesToOpen(HWND owner, const std::string& folder) {
  std::vector<wchar_t> names(manyFiles);
  const std::wstring begin = platform::wideText(folder);
  OPENFILENAMEW dialog = dialogFor(owner, names, begin);
  dialog.lpstrFilter = openFilter;
  dialog.Flags |= OFN_FILEMUSTEXIST | OFN_ALLOWMULTISELECT;
  if (GetOpenFileNameW(&dialog) == FALSE) return {};
  return filesIn(names);
}

std::optional<std::string> askNameToSave(HWND owner, const std::string& suggested) {
  const std::filesystem::path path(platform::wideText(suggested));
  const std::wstring name = path.filename().wstring();
  std::vector<wchar_t> names(longestPath);
  std::copy(name.begin(), name.end(), names.begin());
  const std::wstring folder = path.parent_path().wstring();
  OPENFILENAMEW dialog = dialogFor(owner, names, folder);
  dialog.lpstrFilter = saveFilter;
  dialog.Flags |= OFN_OVERWRITEPROMPT | OFN_PATHMUSTEXIST | OFN_NOREADONLYRETURN;
  if (GetSaveFileNameW(&dialog) == FALSE) return std::nullopt;
  return platform::displayPath(std::filesystem::path(names.data()));
}

std::vector<std::string> droppedFiles(WPARAM drop) {
  const auto handle = reinterpret_cast<HDROP>(drop);
  std::vector<std::string> files;
  const UINT count = DragQueryFileW(handle, 0xFFFFFFFF, nullptr, 0);
  for (UINT i = 0; i < count; ++i) {
    std::wstring name(DragQueryFileW(handle, i, nullptr, 0), L'\0');
    DragQueryFileW(handle, i, name.data(), static_cast<UINT>(name.size() + 1));
    files.push_back(platform::displayPath(std::filesystem::path(name)));
  }
  DragFinish(handle);
  return files;
}

}  // namespace fiohost::view
