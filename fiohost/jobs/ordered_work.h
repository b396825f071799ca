// Pieces of work that several threads do, and whose results one thread takes in order.
#pragma once

#include <cstddef>
#include <functional>

namespace fiohost {

struct OrderedSteps {
  // Asked before each piece is begun, on any thread; false: no further piece is begun.
  std::function<bool()> goOn;
  // Does the piece of that number, on any thread.
  std::function<void(std::size_t number)> work;
  // Takes what the piece of that number came to, on the caller's thread.
  std::function<void(std::size_t number)> take;
};

// Does pieces 0 to count - 1, up to threads of them at a time; with one thread everything happens
// on the caller's. Each is begun in order and taken in order, as soon as it and all before it are
// done. What a step throws is thrown here when it is that piece's turn; no thread is left running.
void runInOrder(std::size_t count, unsigned threads, const OrderedSteps& steps);

}  // namespace fiohost
