// A handler may do next to nothing: it sets a flag and hands the next Ctrl-C back to the system, so
// that a user is never locked in by work that does not ask.

#include "Interrupt.h"

#include <csignal>

#include "Failure.h"

namespace Host {

namespace {

volatile std::sig_atomic_t isInterrupted = 0;

void NoteInterrupt(int signal) {
    isInterrupted = 1;
    std::signal(signal, SIG_DFL);
}

}  // namespace

void HandleSignals() {
    std::signal(SIGINT, NoteInterrupt);
    std::signal(SIGXFSZ, SIG_IGN);
}

bool IsInterrupted() noexcept {
    return isInterrupted != 0;
}

void ThrowIfInterrupted() {
    if (IsInterrupted())
        throw Interrupted();
}

}  // namespace Host
