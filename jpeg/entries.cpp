// The JPEG family's describing entries: thin shells over jpeg/file_information.
#include "host/plugin_entries.h"
#include "jpeg/file_information.h"

namespace jpeg {
namespace {

int describeWide(host::DescribeParameters& parameters) noexcept {
  const HGLOBAL described = describeFile(parameters.path);
  parameters.result = reinterpret_cast<host::u64>(described);
  return parameters.result != 0 ? 1 : 0;
}

}  // namespace
}  // namespace jpeg

extern "C" {

HGLOBAL kfJpgGetFileData(host::u64, const char* path) noexcept { return jpeg::describeFile(path); }

// Of the action codes only the description of a wide path is the JPEG family's; a file that is not
// served stores all ones and still answers 1, so callers look at the result slot.
int kfJpgFIOAction(host::u64, int action, void* parameters) noexcept {
  if (action != host::actionDescribe || parameters == nullptr) return 0;
  return jpeg::describeWide(*static_cast<host::DescribeParameters*>(parameters));
}
}
