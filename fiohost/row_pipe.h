// Rows on their way from a reading call of the plug-in, in one thread, to a writing call in
// another.
#pragma once

#include <condition_variable>
#include <deque>
#include <mutex>
#include <vector>

#include "host/types.h"

namespace fiohost {

// Holds a few rows when the picture comes in one pass. A picture that may come in several is held
// whole, and rows are given out once the last pass has ended.
class RowPipe {
 public:
  explicit RowPipe(bool severalPasses) : whole_(severalPasses) { spare_.reserve(mostWaiting); }
  RowPipe(const RowPipe&) = delete;
  RowPipe& operator=(const RowPipe&) = delete;

  // The reading end. Row 0 begins a pass. False once the writing end has stopped.
  bool put(host::u32 row, const host::u8* bytes, std::size_t byteCount);
  void endPutting();

  // The writing end: rows in order from 0. Null when the row will never come. The bytes are valid
  // until the next call.
  host::u8* take();
  void stopTaking();

 private:
  static constexpr std::size_t mostWaiting = 64;  // rows

  bool whole_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<std::vector<host::u8>> waiting_;
  std::vector<std::vector<host::u8>>
      spare_;  // used rows, to be filled again; never grows, so that taking needs no memory
  std::vector<host::u8> taken_;
  bool ended_ = false;
  bool stopped_ = false;
};

}  // namespace fiohost
