#include <objbase.h>

#include "fiohost/failure.h"
#include "fiohost/save_settings.h"
#include "fiohost/view/view_run.h"
#include "fiohost/view/window/view_window.h"

namespace fiohost::view {
namespace {

// The file dialogs of later systems need it.
class ComForThisThread {
 public:
  ComForThisThread() : result_(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)) {}
  ComForThisThread(const ComForThisThread&) = delete;
  ComForThisThread& operator=(const ComForThisThread&) = delete;
  ~ComForThisThread() {
    if (SUCCEEDED(result_)) CoUninitialize();
  }

 private:
  HRESULT result_;
};

// Without a place for settings the window remembers nothing.
std::string settingsPath(const Session& session) {
  try {
    return SettingsFile(session.folder).path();
  } catch (const Failure&) {
    return {};
  }
}

}  // namespace

void runViewer(const Session& session, const std::vector<std::string>& files) {
  const ComForThisThread com;
  INITCOMMONCONTROLSEX controls = {};
  controls.dwSize = sizeof controls;
  controls.dwICC = ICC_BAR_CLASSES | ICC_PROGRESS_CLASS;
  InitCommonControlsEx(&controls);
  ViewWindow window(session, settingsPath(session));
  window.openFirst(files);
  window.run();
}

}  // namespace fiohost::view
