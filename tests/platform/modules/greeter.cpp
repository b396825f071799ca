#include "tests/platform/modules/greeter.h"

namespace {

AttachReport report = {};
int* detachCounter = nullptr;

void attach(HINSTANCE instance) {
  ++report.attached;
  report.instance = instance;
  GetModuleFileNameA(instance, report.fileName, MAX_PATH);
  LoadStringA(instance, 100, report.greeting, sizeof(report.greeting));
  DisableThreadLibraryCalls(instance);
}

}  // namespace

extern "C" {

extern const int greeterTable[3] = {11, 22, 33};

int greeterAdd(int first, int second) { return first + second; }

const AttachReport* greeterAttachReport() { return &report; }

void greeterSetDetachCounter(int* counter) { detachCounter = counter; }

BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID) {
  if (reason == DLL_PROCESS_ATTACH) attach(instance);
  if (reason == DLL_PROCESS_DETACH && detachCounter != nullptr) ++*detachCounter;
  return TRUE;
}

}  // extern "C"
