#include "Interruption.h"

#include <atomic>
#include <csignal>
#include <cstdlib>

#if defined(_WIN32)
#include <windows.h>
#endif

namespace {

std::atomic<bool> raised{false};
static_assert(std::atomic<bool>::is_always_lock_free, "handlers of signals may set it");

extern "C" void Raise(int signal) {
    raised.store(true, std::memory_order_relaxed);
    // A read that waits for a pipe goes on waiting; the second time it is ended all the same.
    std::signal(signal, SIG_DFL);
}

}  // namespace

Interruption::Interruption() : before_(std::signal(SIGINT, Raise)) {
    // Started with the signal ignored, as in the background of a shell, the program goes on ignoring it.
    if (before_ == SIG_IGN) std::signal(SIGINT, SIG_IGN);
}

Interruption::~Interruption() {
    if (before_ != SIG_ERR) std::signal(SIGINT, before_);
}

const std::atomic<bool>* Interruption::Flag() const {
    return &raised;
}

void EndInterrupted() {
#if defined(_WIN32)
    // What the system itself would have ended the program with. Not at once: the console gets its code page back.
    std::exit(static_cast<int>(STATUS_CONTROL_C_EXIT));
#else
    std::signal(SIGINT, SIG_DFL);
    std::raise(SIGINT);
    std::abort();
#endif
}
