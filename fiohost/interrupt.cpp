#include "fiohost/interrupt.h"

#include <csignal>

namespace fiohost {
namespace {

volatile std::sig_atomic_t interruptSeen = 0;

void onInterrupt(int) { interruptSeen = 1; }

}  // namespace

void watchInterrupt() { std::signal(SIGINT, &onInterrupt); }

bool interrupted() { return interruptSeen != 0; }

}  // namespace fiohost
