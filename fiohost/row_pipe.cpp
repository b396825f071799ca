#include "fiohost/row_pipe.h"

namespace fiohost {

bool RowPipe::put(host::u32 row, const host::u8* bytes, std::size_t byteCount) {
  std::unique_lock lock(mutex_);
  if (row == 0 && whole_) waiting_.clear();
  changed_.wait(lock, [&] { return stopped_ || whole_ || waiting_.size() < mostWaiting; });
  if (stopped_) return false;
  std::vector<host::u8> held;
  if (!spare_.empty()) {
    held = std::move(spare_.back());
    spare_.pop_back();
  }
  held.assign(bytes, bytes + byteCount);
  waiting_.push_back(std::move(held));
  changed_.notify_all();
  return true;
}

void RowPipe::endPutting() {
  const std::lock_guard lock(mutex_);
  ended_ = true;
  changed_.notify_all();
}

host::u8* RowPipe::take() {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [&] { return ended_ || (!whole_ && !waiting_.empty()); });
  if (waiting_.empty()) return nullptr;
  if (!taken_.empty() && spare_.size() < spare_.capacity()) spare_.push_back(std::move(taken_));
  taken_ = std::move(waiting_.front());
  waiting_.pop_front();
  changed_.notify_all();
  return taken_.data();
}

void RowPipe::stopTaking() {
  const std::lock_guard lock(mutex_);
  stopped_ = true;
  changed_.notify_all();
}

}  // namespace fiohost
