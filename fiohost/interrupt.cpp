#include "fiohost/interrupt.h"

#include <atomic>
#include <csignal>

namespace fiohost {
namespace {

// Several threads look, and on Windows the handler runs on one of its own.
std::atomic<bool> interruptSeen = false;
static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler may not wait");

void onInterrupt(int) { interruptSeen = true; }

}  // namespace

void watchInterrupt() { std::signal(SIGINT, &onInterrupt); }

bool interrupted() { return interruptSeen; }

}  // namespace fiohost
