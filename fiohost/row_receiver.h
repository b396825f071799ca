// The host's end of the plug-in's row callback: rows come in, are brought to the colours and size
// of the target, and leave to the writer.
#pragma once

#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "fiohost/area_shrinker.h"
#include "fiohost/progress.h"
#include "fiohost/row_writer.h"
#include "host/requests.h"

namespace fiohost {

class RowReceiver {
 public:
  // The writer of a pass. A later pass begins the same picture anew and has its own.
  using BeginPass = std::function<std::unique_ptr<RowWriter>(const PictureShape& shape)>;

  struct Target {
    BeginPass begin;
    std::optional<Size> box;  // the picture is reduced to fit inside
  };

  RowReceiver(Target target, host::u32 bytesPerPixel, const Size& wholeSize, Progress& progress);

  // The request to hand to the plug-in together with &onRows; it lives as long as this.
  [[nodiscard]] host::ReadRequest* request() noexcept { return &call_.request; }
  static int onRows(host::ReadRequest* request, host::u64 zero, host::u32 firstRow, host::u32 width,
                    host::u32 rowCount, host::u8** rows, host::u16 flags, host::i32 colour,
                    host::u32 mask) noexcept;

  // Throws what made the receiver stop the rows, if anything did.
  void rethrow() const;
  // Throws that too, or Failure when rows are missing.
  void finish();
  // The size that was written, once rows have arrived.
  [[nodiscard]] const PictureShape& shape() const noexcept { return shape_; }

 private:
  // The callback gets the request alone; the receiver is found behind it.
  struct Call {
    host::ReadRequest request;
    RowReceiver* receiver;
  };

  void take(host::u32 firstRow, host::u32 width, host::u32 rowCount, host::u8* const* rows,
            host::u16 flags);
  void beginPass(host::u32 width);
  void takeRow(const host::u8* row);

  Target target_;
  host::u32 bytesPerPixel_;
  Size wholeSize_;  // delivered unless the plug-in writes another size into the request
  Progress& progress_;
  Call call_ = {};
  Size delivered_ = {};
  PictureShape shape_ = {};
  host::u32 nextRow_ = 0;
  std::vector<host::u8> display_;
  std::optional<AreaShrinker> shrinker_;
  std::unique_ptr<RowWriter> writer_;
  std::exception_ptr stopped_;
};

}  // namespace fiohost
