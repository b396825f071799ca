// Work away from the window's thread, and the way its results come back.
#pragma once

#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

namespace fiohost::view {

// Raised when nobody wants a job's result any more; shared by the job and who ordered it.
using StopFlag = std::shared_ptr<std::atomic<bool>>;

// Functions that any thread leaves for one thread to call.
class Mailbox {
 public:
  // wake is called by the leaving thread, to make the other one call deliver().
  explicit Mailbox(std::function<void()> wake) : wake_(std::move(wake)) {}

  void post(std::function<void()> letter);
  // Calls what was left so far, in its order.
  void deliver();

 private:
  std::function<void()> wake_;
  std::mutex mutex_;
  std::deque<std::function<void()>> letters_;
};

// One thread that does jobs in their order.
class Worker {
 public:
  // A job gets its own flag, and throws nothing.
  using Job = std::function<void(const StopFlag&)>;

  Worker();
  Worker(const Worker&) = delete;
  Worker& operator=(const Worker&) = delete;
  ~Worker();  // stops everything and waits for the job under way

  // Answers the job's flag; raising it drops the job, or asks it to end early.
  StopFlag add(Job job);

 private:
  struct Entry {
    Job job;
    StopFlag flag;
  };
  void run();

  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<Entry> waiting_;
  StopFlag current_;
  bool ending_ = false;
  std::thread thread_;
};

}  // namespace fiohost::view
