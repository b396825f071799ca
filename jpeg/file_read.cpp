// Reading a JPEG file: the full image through the codec, or its EXIF thumbnail as a preview.
#include "frame/error_report.h"
#include "frame/source_path.h"
#include "host/plugin_entries.h"
#include "jpeg/decoder.h"
#include "jpeg/read_request.h"
#include "jpeg/thumbnail_read.h"
#include "platform/global_memory.h"
#include "platform/working_directory.h"
#include "property/metadata_scan.h"

namespace jpeg {
namespace {

constexpr host::i32 readFailedPosition = 521;

int runCodec(const frame::SourcePath& source, const char* fallbackPath,
             const host::CodecCallback& callback) noexcept {
  if (source.wide != nullptr) return kJpgFileReadExW(source.wide, &callback, nullptr);
  const char* path = source.ansi != nullptr ? source.ansi : fallbackPath;
  return path != nullptr ? kJpgFileReadEx(path, &callback, nullptr) : 0;
}

int decodeFile(const char* fallbackPath, HGLOBAL fileData, host::ReadRequest& request,
               host::RowCallback* rowCallback) noexcept {
  const platform::LockedGlobal lock(fileData);
  auto* record = lock.as<host::FileDataRecord>();
  if (record == nullptr) return 0;
  property::SegmentCapture capture(record, lock.size(), property::readRules);
  Decoder decoder(request, rowCallback, *record, capture);
  const host::CodecCallback callback = decoder.callback();
  const int result = runCodec(frame::sourcePathOf(fileData), fallbackPath, callback);
  return finishDecode(result, *record, decoder, capture, frame::jpegErrors, readFailedPosition);
}

int deliver(const char* path, HGLOBAL fileData, host::ReadRequest& request,
            host::RowCallback* rowCallback) noexcept {
  const platform::TemporaryWorkingDirectory temporary;
  return needsCodec(request) ? decodeFile(path, fileData, request, rowCallback)
                             : deliverThumbnail(fileData, request, rowCallback);
}

int readFile(const char* path, HGLOBAL fileData, host::ReadRequest& request,
             host::RowCallback* rowCallback) noexcept {
  if (!adoptPreview(fileData, request)) return 0;
  const int result = deliver(path, fileData, request, rowCallback);
  // The picture counts even when its metadata cannot be taken in.
  if (result >= 1) static_cast<void>(property::scanMappedFile(fileData, nullptr, 0));
  return result;
}

}  // namespace
}  // namespace jpeg

extern "C" int kfJpgFileRead(host::u64, const char* path, HGLOBAL fileData,
                             host::ReadRequest* request, host::RowCallback* rowCallback) noexcept {
  if (request == nullptr || rowCallback == nullptr) return 0;
  return jpeg::readFile(path, fileData, *request, rowCallback);
}
