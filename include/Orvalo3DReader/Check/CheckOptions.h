#pragma once

#include <atomic>
#include <cstdint>

namespace orvalo {

/// What a check can be asked for.
struct CheckOptions {
    /// Whether what is read all the same, but likely not meant, is told too.
    bool warnings = true;
    /// Whether to end at the first error, as the reader does.
    bool firstOnly = false;
    /// How many diagnostics of one rule are given for the rows of one section; one more says how many there are
    /// besides.
    std::uint64_t perSection = 20;
    /// As for ReadOptions.
    unsigned threads = 1;
    /// As for ReadOptions.
    unsigned long long* cubesRead = nullptr;
    /// As for ReadOptions: the check then throws Stopped.
    const std::atomic<bool>* stop = nullptr;
    /// As for ReadOptions, of the reading of results.
    float* percentRead = nullptr;
};

}  // namespace orvalo
