#pragma once

#include <atomic>

namespace orvalo {

/// All that a read can be asked for. Pointers stay the caller's and must outlive the read; null asks for nothing.
struct ReadOptions {
    /// Models: whether just the CUBES and DAMPING sections are read. Cells then keep the material numbers written in
    /// the file, and the model is not checked as a whole.
    bool cubesOnly = false;
    /// Models: whether samples of tables are stored as doubles or as floats.
    bool doublePrecision = true;
    /// How many threads may read, the calling one among them; 0 for as many as the process may run. What is read, and
    /// every error, is the same for any number. Small files are read by one, and others take only what helps.
    unsigned threads = 1;
    /// Models: where the number of cubes read so far is stored, for a caller that shows progress from another thread.
    unsigned long long* cubesRead = nullptr;
    /// Results: where the progress of reading, 0 to 100 percent, is stored, as `cubesRead`.
    float* percentRead = nullptr;
    /// Ends the read with Stopped soon after it is set, also where it was set before. Any thread may set it. It is
    /// looked at between portions of work that take a few milliseconds; then what was read so far is released, which
    /// takes longer where that is some hundred MiB. A read that waits for a pipe goes on waiting.
    const std::atomic<bool>* stop = nullptr;
};

}  // namespace orvalo
