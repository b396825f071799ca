// Who a picture that is being encoded comes from.
#pragma once

#include "host/klibjpg.h"

namespace klibjpg {

// Each answer is the host's: codecGoOn goes on, anything else stops and is the result. The
// functions are called from frames that an error may jump over; they must not throw.
class Supplier {
 public:
  virtual host::i32 onHeader(host::ImageHeader& header) = 0;
  virtual host::i32 onCountSegments(host::SegmentCountBlock& count);
  virtual host::i32 onSegment(host::SegmentBlock& segment);
  // A row that can be read in place, or null when it has to be asked for.
  [[nodiscard]] virtual const host::u8* rowInPlace(host::u32 row) const;
  virtual host::i32 onRow(host::RowBlock& row) = 0;

 protected:
  ~Supplier() = default;
};

// Asks the host's event callback for everything.
class EventSupplier final : public Supplier {
 public:
  explicit EventSupplier(const host::CodecCallback& callback) noexcept : callback_(callback) {}

  host::i32 onHeader(host::ImageHeader& header) override;
  host::i32 onCountSegments(host::SegmentCountBlock& count) override;
  host::i32 onSegment(host::SegmentBlock& segment) override;
  host::i32 onRow(host::RowBlock& row) override;

 private:
  host::i32 raise(host::CodecEvent event, void* block);

  const host::CodecCallback& callback_;
};

// A whole picture in memory, without segments. Fails at its header when the buffer does not hold
// all rows.
class PictureSupplier final : public Supplier {
 public:
  explicit PictureSupplier(const host::StreamImage& picture) noexcept : picture_(picture) {}

  host::i32 onHeader(host::ImageHeader& header) override;
  [[nodiscard]] const host::u8* rowInPlace(host::u32 row) const override;
  host::i32 onRow(host::RowBlock& row) override;

 private:
  const host::StreamImage& picture_;
};

}  // namespace klibjpg
