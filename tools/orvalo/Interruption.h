#pragma once

#include <atomic>

/// Thrown where the user ends the program while it reads, so that nothing stays behind. main() then ends it.
struct Interrupted {};

/// As long as one lives, Ctrl-C raises a flag instead of ending the program at once, which it does the second time.
class Interruption {
public:
    Interruption();
    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;
    ~Interruption();

    /// For the library, which throws Stopped once it is raised.
    const std::atomic<bool>* Flag() const;

private:
    void (*before_)(int);
};

/// Ends the program as Ctrl-C does.
[[noreturn]] void EndInterrupted();
