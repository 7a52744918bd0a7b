#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>

#include <Orvalo3DReader/Common/Stopped.h>

namespace orvalo {

/// The caller's flag that ends a read or a write, or none. Whatever may take long looks at it every few milliseconds:
/// where a file is read on, at keywords, and in pieces of what is computed thereafter.
class StopFlag {
public:
    StopFlag() = default;
    explicit StopFlag(const std::atomic<bool>* flag) : flag_(flag) {}
    /// With the text of the exception.
    StopFlag(const std::atomic<bool>* flag, const char* text) : flag_(flag), text_(text) {}

    bool IsSet() const { return flag_ != nullptr && flag_->load(std::memory_order_relaxed); }

    /// Throws Stopped once the flag is set.
    void Check() const {
        if (IsSet()) throw Stopped(text_);
    }

    /// Calls `work(begin, end)` for the pieces, of at most `piece`, of [0, count), and looks at the flag before each.
    template <class Work>
    void CheckEach(std::size_t piece, std::size_t count, const Work& work) const {
        for (std::size_t begin = 0; begin < count; begin += piece) {
            Check();
            work(begin, begin + std::min(piece, count - begin));
        }
    }

private:
    const std::atomic<bool>* flag_ = nullptr;
    const char* text_ = "Reading was stopped.";
};

}  // namespace orvalo
