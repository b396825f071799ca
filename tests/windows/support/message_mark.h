// Telling that a thread has dispatched everything that was posted to it so far: a message of our
// own is posted behind the rest, and a hook sees the thread take it out of its queue.
#pragma once

#include "platform/system.h"

namespace test {

class MessageMark {
 public:
  explicit MessageMark(HWND window);
  MessageMark(const MessageMark&) = delete;
  MessageMark& operator=(const MessageMark&) = delete;
  ~MessageMark();

  // Fails the test when the mark does not pass in time. A window that is gone has nothing left.
  void pass() const;

 private:
  HWND window_;
  HHOOK hook_;
};

}  // namespace test
