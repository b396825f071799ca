// Reduces a picture by averaging, row by row: a target pixel is the mean of the source area that
// it covers, parts of pixels counting by their share. The arithmetic is exact.
#pragma once

#include <vector>

#include "host/types.h"

namespace fiohost {

struct Size {
  host::u32 width;   // pixels
  host::u32 height;  // pixels
};

// The largest size with the picture's shape that fits into a box; never larger than the picture.
[[nodiscard]] Size fitInside(const Size& picture, const Size& box);

class AreaShrinker {
 public:
  // target is at most source on both sides, and neither side is 0.
  AreaShrinker(const Size& source, const Size& target, host::u32 channels);

  // Takes the next source row; calls emit(const u8* row) for the target row that it completes.
  template <typename Emit>
  void addRow(const host::u8* row, Emit emit) {
    sumColumns(row);
    // A source row is target_.height units high, a target row source_.height; so at most one
    // target row ends inside a source row.
    const host::u32 remaining = source_.height - filled_;
    if (target_.height < remaining) {
      accumulate(target_.height);
      filled_ += target_.height;
      return;
    }
    accumulate(remaining);
    emit(finishRow());
    filled_ = target_.height - remaining;
    accumulate(filled_);
  }

 private:
  void sumColumns(const host::u8* row);
  void accumulate(host::u32 weight);
  const host::u8* finishRow();

  Size source_;
  Size target_;
  host::u32 channels_;
  host::u32 filled_ = 0;               // height units of the current target row
  std::vector<host::u64> columnSums_;  // of one source row
  std::vector<host::u64> areaSums_;    // of the current target row
  std::vector<host::u8> result_;
};

}  // namespace fiohost
