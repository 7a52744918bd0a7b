#pragma once

#include <atomic>
#include <string>

namespace orvalo {

/// All that a write can be asked for. Pointers stay the caller's and must outlive the write; null asks for nothing.
struct WriteOptions {
    /// Whether a regular file that is there may be replaced. It keeps its permissions. One that is marked read-only is
    /// not replaced; of a link the link is.
    bool overwrite = false;
    /// Models: text at the head of the file, each line of it a comment.
    std::string comment;
    /// Models: the name of a file beside the model to which the CUBES and DAMPING sections go, for the model to
    /// include it; everything goes into one file where it is empty. It must be a name that can be included: two or more
    /// lower-case letters, digits and `_ . + - =`.
    std::string cubesFile;
    /// Ends the write with Stopped soon after it is set, also where it was set before. Any thread may set it. It is
    /// looked at between portions of work that take a few milliseconds; a write that waits for the system goes on
    /// waiting.
    const std::atomic<bool>* stop = nullptr;
    /// Where the progress of writing, 0 to 100 percent, is stored, for a caller that shows it from another thread:
    /// relaxed atomic stores, no lock, so it must be loaded atomically there.
    float* percentWritten = nullptr;
};

}  // namespace orvalo
