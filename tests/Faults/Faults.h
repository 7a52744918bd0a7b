#pragma once

#include <atomic>
#include <cerrno>
#include <climits>
#include <cstddef>

/// Faults that the operating system may show, put in on purpose: every call of the process to the functions named here
/// passes through this executable's own versions of them.
namespace orvalo::faults {

/// Calls counted from 1, of which the one at `at`, or with `forever` every one from there on, fails.
struct Series {
    long at = LONG_MAX;
    bool forever = false;
    std::atomic<long> calls = 0;

    bool Fails() {
        const long call = ++calls;
        return forever ? call >= at : call == at;
    }
    bool Reached() const { return calls >= at; }
};

/// malloc, calloc, realloc, aligned_alloc and mmap, and through them operator new. Null for none.
inline Series* memory = nullptr;
/// munmap, as where a process has as many mappings as it may have.
inline Series* unmapping = nullptr;
/// Whether the system makes all anonymous pages large, unless told otherwise.
inline bool largePages = false;
/// pthread_create, as where a process has as many threads as it may have.
inline Series* starting = nullptr;
/// Before the paths in /proc and /sys, as if the system were another one; null for none.
inline const char* systemRoot = nullptr;
/// open, read or pread, and fstat or stat.
inline Series* opening = nullptr;
inline Series* reading = nullptr;
inline Series* asking = nullptr;
/// write, fsync, close, fchmod, link and rename; only while it is set, so that nothing but a write is meant.
inline Series* saving = nullptr;
/// Whether the file system has links.
inline bool links = true;
/// How many more bytes the medium takes.
inline std::size_t room = static_cast<std::size_t>(-1);
/// Calls of read, pread and write, of which one raises the flag.
inline Series* raising = nullptr;
inline std::atomic<bool> raised{false};

/// How reads are transferred.
struct Transfer {
    /// The most that one call gives: from 1 to `most`, varied by `seed` where that is not 0.
    std::size_t most = static_cast<std::size_t>(-1);
    unsigned int seed = 0;
    /// Every second call is interrupted by a signal.
    bool interrupted = false;
    /// Where every file ends, as if it had been cut after it was opened.
    std::size_t end = static_cast<std::size_t>(-1);
    /// From where on no file can be read.
    std::size_t unreadable = static_cast<std::size_t>(-1);
};
inline Transfer transfer;

/// What is held now: allocations, mappings (counted where FailingMemory.cpp is linked), and files that are open.
struct Held {
    long allocations = 0;
    long mappings = 0;
    long files = 0;
    bool operator==(const Held&) const = default;
};
inline Held held;

/// Several threads take and release at once.
inline void Count(long& counted, long change) {
    __atomic_fetch_add(&counted, change, __ATOMIC_RELAXED);
}

/// Whether this call of the series, if there is one, fails; then `errno` is set to `error`.
inline bool Fails(Series* series, int error) {
    if (series == nullptr || !series->Fails()) return false;
    errno = error;
    return true;
}

}  // namespace orvalo::faults
