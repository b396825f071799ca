// The last error report of each thread, kept for a host that wants to know why a call failed.
#include "host/k32comm.h"

namespace k32Comm {
namespace {

thread_local host::ErrorReport lastReport = {};

}  // namespace
}  // namespace k32Comm

extern "C" int c32SetDLLErrInfo(HWND /*owner*/, int code, int site, int unit, int source,
                                int position) {
  host::ErrorReport& report = k32Comm::lastReport;
  report = {report.count + 1, 0, code, site, unit, source, position};
  return 1;
}

extern "C" void kfioLastError(host::ErrorReport* report) {
  if (report != nullptr) *report = k32Comm::lastReport;
}

extern "C" void kfioClearError() { k32Comm::lastReport = {}; }
