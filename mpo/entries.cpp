// The MPO family's entries: thin shells.
#include "host/plugin_entries.h"
#include "mpo/file_information.h"
#include "mpo/file_read.h"
#include "mpo/image_read.h"
#include "mpo/image_write.h"

namespace mpo {
namespace {

int describeWide(host::DescribeParameters& parameters) noexcept {
  const HGLOBAL described = describeFile(
      {.file = reinterpret_cast<HANDLE>(parameters.handle), .widePath = parameters.path});
  parameters.result = reinterpret_cast<host::u64>(described);
  return described != nullptr ? 1 : 0;
}

}  // namespace
}  // namespace mpo

extern "C" {

HGLOBAL kfMPOGetFileData(HANDLE file, const char* path, host::u64) noexcept {
  return mpo::describeFile({.file = file, .ansiPath = path});
}

int kfMPOFileRead(HANDLE file, const char* path, HGLOBAL fileData, host::ReadRequest* request,
                  host::RowCallback* rowCallback) noexcept {
  if (request == nullptr || rowCallback == nullptr) return 0;
  return mpo::readFile(file, path, fileData, *request, rowCallback);
}

int kfMPOFileWrite(host::u64, HGLOBAL fileData, void* user,
                   host::MPORowCallback* rowCallback) noexcept {
  return rowCallback != nullptr ? mpo::writeSingleImage(fileData, user, rowCallback) : 0;
}

int kfMPOFIOAction(HGLOBAL fileData, int action, void* request, void* context, int index) noexcept {
  if (request == nullptr) return 0;
  switch (action) {
    case host::actionReadImages:
      return mpo::readImages(fileData, reinterpret_cast<host::MPORequestCallback*>(request),
                             context, index);
    case host::actionWriteImage:
      return mpo::writeImage(fileData, reinterpret_cast<host::MPORequestCallback*>(request),
                             context);
    case host::actionDescribe:
      return mpo::describeWide(*static_cast<host::DescribeParameters*>(request));
    default:
      return 0;
  }
}
}
