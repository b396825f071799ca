#include "fiohost/row_reader.h"

#include "fiohost/describe.h"
#include "fiohost/explain.h"

namespace fiohost {
namespace {

// The callback gets the request alone; the pipe is found behind it.
struct Call {
  host::ReadRequest request = {1, {}, 0, {}, 0, 0};
  RowPipe* pipe = nullptr;
  host::u32 bytesPerPixel = 0;
  std::exception_ptr failure;
};

int onRows(host::ReadRequest* request, host::u64, host::u32 firstRow, host::u32 width,
           host::u32 rowCount, host::u8** rows, host::u16, host::i32, host::u32) noexcept {
  Call& call = *reinterpret_cast<Call*>(request);
  try {
    for (host::u32 row = 0; row < rowCount; ++row) {
      if (!call.pipe->put(firstRow + row, rows[row], std::size_t{width} * call.bytesPerPixel)) {
        return -1;
      }
    }
  } catch (...) {  // there is no memory for the row
    call.failure = std::current_exception();
    return -1;
  }
  return 1;
}

}  // namespace

RowReader::RowReader(const Session& session, const SourceFile& file, RowPipe& pipe)
    : pipe_(pipe), thread_([this, &session, &file] { run(session, file); }) {}

RowReader::~RowReader() { stop(); }

void RowReader::stop() {
  pipe_.stopTaking();
  if (thread_.joinable()) thread_.join();
}

void RowReader::rethrow() const {
  if (failure_) std::rethrow_exception(failure_);
}

void RowReader::run(const Session& session, const SourceFile& file) noexcept {
  try {
    read(session, file);
  } catch (...) {
    failure_ = std::current_exception();
  }
  pipe_.endPutting();
}

void RowReader::read(const Session& session, const SourceFile& file) {
  Described described = describeFile(session, file);
  Call call;
  call.pipe = &pipe_;
  call.bytesPerPixel = described.fileData.common().bitsPerPixel / 8;
  session.reports.clear();
  const int result =
      session.plugin.read(described.family, described.fileData.handle(), &call.request, &onRows);
  if (call.failure) std::rethrow_exception(call.failure);
  if (result == 0) {
    throw explainCode(session.reports.code(), "the plug-in delivered no picture",
                      "the file may be damaged or may have changed meanwhile");
  }
}

}  // namespace fiohost
