#include "fiohost/jobs/ordered_work.h"

#include <algorithm>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <vector>

namespace fiohost {
namespace {

class Crew {
 public:
  // Starts as many threads as can be had; none may be.
  Crew(std::size_t count, unsigned threads, const OrderedSteps& steps)
      : steps_(steps), pieces_(count) {
    threads_.reserve(threads);
    for (unsigned i = 0; i < threads && hire(); ++i) continue;
  }
  Crew(const Crew&) = delete;
  Crew& operator=(const Crew&) = delete;
  ~Crew() {
    {
      const std::lock_guard guard(mutex_);
      stopped_ = true;
    }
    for (std::thread& thread : threads_) thread.join();
  }

  [[nodiscard]] bool empty() const noexcept { return threads_.empty(); }

  // Waits for the piece and throws what it threw. False when it is not begun any more.
  [[nodiscard]] bool await(std::size_t number) {
    std::unique_lock lock(mutex_);
    awaited_ = number;
    changed_.wait(lock, [&] { return pieces_[number].done || (stopped_ && number >= next_); });
    if (!pieces_[number].done) return false;
    if (pieces_[number].thrown) std::rethrow_exception(pieces_[number].thrown);
    return true;
  }

 private:
  struct Piece {
    bool done = false;
    std::exception_ptr thrown;
  };

  bool hire() {
    try {
      threads_.emplace_back([this] { work(); });
      return true;
    } catch (const std::system_error&) {  // those that are there do it all
      return false;
    }
  }

  void work() noexcept {
    while (const std::optional<std::size_t> number = begin()) {
      std::exception_ptr thrown;
      try {
        steps_.work(*number);
      } catch (...) {
        thrown = std::current_exception();
      }
      finish(*number, thrown);
    }
  }

  // The next piece's number, or nothing when all are begun or no more are wanted.
  std::optional<std::size_t> begin() {
    const std::lock_guard guard(mutex_);
    if (!stopped_ && !steps_.goOn()) {
      stopped_ = true;
      changed_.notify_all();
    }
    if (stopped_ || next_ == pieces_.size()) return std::nullopt;
    return next_++;
  }

  void finish(std::size_t number, const std::exception_ptr& thrown) {
    const std::lock_guard guard(mutex_);
    pieces_[number] = {true, thrown};
    if (number == awaited_) changed_.notify_all();
  }

  const OrderedSteps& steps_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<Piece> pieces_;
  std::size_t next_ = 0;
  std::size_t awaited_ = 0;
  bool stopped_ = false;
  std::vector<std::thread> threads_;
};

void runAlone(std::size_t count, const OrderedSteps& steps) {
  for (std::size_t number = 0; number < count && steps.goOn(); ++number) {
    steps.work(number);
    steps.take(number);
  }
}

}  // namespace

void runInOrder(std::size_t count, unsigned threads, const OrderedSteps& steps) {
  const auto useful = static_cast<unsigned>(std::min<std::size_t>(threads, count));
  if (useful <= 1) return runAlone(count, steps);
  Crew crew(count, useful, steps);
  if (crew.empty()) return runAlone(count, steps);
  for (std::size_t number = 0; number < count && crew.await(number); ++number) steps.take(number);
}

}  // namespace fiohost
