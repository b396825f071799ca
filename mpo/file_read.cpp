#include "mpo/file_read.h"

#include "jpeg/read_request.h"
#include "jpeg/thumbnail_read.h"
#include "mpo/image_input.h"
#include "mpo/mpo_errors.h"
#include "platform/working_directory.h"
#include "property/metadata_scan.h"

namespace mpo {
namespace {

int decodeFirst(HANDLE file, const char* path, HGLOBAL fileData, host::ReadRequest& request,
                host::RowCallback* rowCallback) noexcept {
  const MpoRecord record(fileData);
  host::FileDataRecord* common = record.common();
  if (common == nullptr) return 0;
  ImageInput input(file, path, fileData);
  if (!input) return 0;
  property::SegmentCapture capture(record.address(), record.size(), property::readRules);
  jpeg::Decoder decoder(request, rowCallback, *common, capture);
  const int result = input.run(record, 0, decoder.callback());
  return jpeg::finishDecode(result, *common, decoder, capture, readCodec.source,
                            readCodec.position);
}

int deliver(HANDLE file, const char* path, HGLOBAL fileData, host::ReadRequest& request,
            host::RowCallback* rowCallback) noexcept {
  const platform::TemporaryWorkingDirectory temporary;
  return jpeg::needsCodec(request) ? decodeFirst(file, path, fileData, request, rowCallback)
                                   : jpeg::deliverThumbnail(fileData, request, rowCallback);
}

}  // namespace

int readFile(HANDLE file, const char* path, HGLOBAL fileData, host::ReadRequest& request,
             host::RowCallback* rowCallback) noexcept {
  if (!jpeg::adoptPreview(fileData, request)) return 0;
  const int result = deliver(file, path, fileData, request, rowCallback);
  // The picture counts even when its metadata cannot be taken in.
  if (result == 1) static_cast<void>(property::scanMappedFile(fileData, nullptr, 0));
  return result;
}

}  // namespace mpo
