#include "fiohost/view/worker.h"

namespace fiohost::view {

void Mailbox::post(std::function<void()> letter) {
  {
    const std::lock_guard guard(mutex_);
    letters_.push_back(std::move(letter));
  }
  wake_();
}

void Mailbox::deliver() {
  std::deque<std::function<void()>> letters;
  {
    const std::lock_guard guard(mutex_);
    letters.swap(letters_);
  }
  for (const std::function<void()>& letter : letters) letter();
}

Worker::Worker() : thread_([this] { run(); }) {}

Worker::~Worker() {
  {
    const std::lock_guard guard(mutex_);
    ending_ = true;
    waiting_.clear();
    if (current_ != nullptr) *current_ = true;
  }
  changed_.notify_all();
  thread_.join();
}

StopFlag Worker::add(Job job) {
  auto flag = std::make_shared<std::atomic<bool>>(false);
  {
    const std::lock_guard guard(mutex_);
    waiting_.push_back({std::move(job), flag});
  }
  changed_.notify_all();
  return flag;
}

void Worker::run() {
  std::unique_lock lock(mutex_);
  while (true) {
    changed_.wait(lock, [this] { return ending_ || !waiting_.empty(); });
    if (ending_) return;
    const Entry entry = std::move(waiting_.front());
    waiting_.pop_front();
    if (*entry.flag) continue;
    current_ = entry.flag;
    lock.unlock();
    entry.job(entry.flag);
    lock.lock();
    current_ = nullptr;
  }
}

}  // namespace fiohost::view
