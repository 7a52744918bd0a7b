#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <mutex>

#include "Common/Platform.h"

namespace orvalo {

/// What it took of late to commit pages of either kind, and which has cost least. Any thread may tell and ask.
///
/// Large pages cost a third of what small ones do, where memory for them is at hand. Where it is not, as on a virtual
/// machine that has yet to be given it, or where it must be gathered first, they may cost several times as much, and
/// nobody can be asked in advance. So they are timed. Two in a row that took longer than as many small ones would have
/// are enough to go back to those, for a time that doubles until one large page has come fast again: it costs little to
/// try one, and what it could cost is spread over more and more.
class PageCosts {
public:
    using Nanoseconds = std::int64_t;

    /// A large page of most systems. Where it is another size, several are timed at once, or parts of one.
    static constexpr std::size_t unit = std::size_t{2} << 20U;

    platform::Pages Cheapest() noexcept {
        const std::lock_guard lock(mutex_);
        return large_ ? platform::Pages::Large : platform::Pages::Small;
    }

    /// A large page took so long.
    void AddLarge(Nanoseconds taken) noexcept {
        const std::lock_guard lock(mutex_);
        const bool slow = taken > smallUnit_;
        slowInARow_ = slow ? slowInARow_ + 1 : 0;
        if (!slow) wait_ = shortestWait;
        if (!large_ || slowInARow_ < 2) return;
        large_ = false;
        left_ = wait_;
        wait_ *= 2;
    }

    /// So many bytes of small pages took so long.
    void AddSmall(std::size_t size, Nanoseconds taken) noexcept {
        const std::lock_guard lock(mutex_);
        const Nanoseconds ofUnit = taken * static_cast<Nanoseconds>(unit) / static_cast<Nanoseconds>(size);
        smallUnit_ += (ofUnit - smallUnit_) / 8;
        left_ -= std::min(left_, size);
        if (left_ > 0) return;
        large_ = true;
        // One is enough to tell.
        slowInARow_ = 1;
    }

private:
    static constexpr std::size_t shortestWait = 32 * unit;

    std::mutex mutex_;
    bool large_ = true;
    int slowInARow_ = 0;
    /// What small pages take for the size of a large one. The first guess is what they take where processors are slow.
    Nanoseconds smallUnit_ = 1'000'000;
    /// How much is to be committed in small pages before a large one is tried, now and the next time.
    std::size_t left_ = 0;
    std::size_t wait_ = shortestWait;
};

}  // namespace orvalo
