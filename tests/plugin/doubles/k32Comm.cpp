#include <cstring>

#include "tests/plugin/doubles/doubles.h"

using doubles::state;

extern "C" {

int c32SetDLLErrInfo(HWND owner, int code, int site, int unit, int source, int position) {
  state().calls.emplace_back("c32SetDLLErrInfo");
  const int owned = owner == nullptr ? 0 : 1;
  state().reports.push_back({1, owned, code, site, unit, source, position});
  return 1;
}

void k32GetKavroIniFileName(char* path, int capacity) {
  state().calls.emplace_back("k32GetKavroIniFileName:" + std::to_string(capacity));
  std::strncpy(path, state().iniPath.c_str(), static_cast<std::size_t>(capacity) - 1);
}

void LauncherSetInitMsgString(HMODULE) { state().calls.emplace_back("LauncherSetInitMsgString"); }
}
