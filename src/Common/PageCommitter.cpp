#include "Common/PageCommitter.h"

#include <algorithm>
#include <chrono>
#include <cstdint>

#include "Common/Buffers.h"

namespace orvalo {

namespace {

using platform::Pages;
using Nanoseconds = std::int64_t;

constexpr std::size_t pageSize = 4096;
/// A large page of most systems. Where it is another size, several are timed at once, or parts of one.
constexpr std::size_t unit = std::size_t{2} << 20U;

/// What it took of late to commit pages of either kind.
class Costs {
public:
    Pages Cheapest() noexcept {
        const std::lock_guard lock(mutex_);
        return large_ ? Pages::Large : Pages::Small;
    }

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

constinit Costs costs;

/// How long it takes to commit [start, start + size).
Nanoseconds TimeToCommit(unsigned char* start, std::size_t size) noexcept {
    using Clock = std::chrono::steady_clock;
    const Clock::time_point before = Clock::now();
    platform::CommitPages(start, size);
    return std::chrono::nanoseconds(Clock::now() - before).count();
}

/// How far `place` lies before the next multiple of `size`, itself counted as one.
std::size_t Before(const unsigned char* place, std::size_t size) {
    return (size - reinterpret_cast<std::uintptr_t>(place) % size) % size;
}

}  // namespace

Pages CheapestPages() noexcept {
    return costs.Cheapest();
}

PageCommitter::PageCommitter(void* buffer, std::size_t size)
    : buffer_(static_cast<unsigned char*>(buffer)), size_(HasOwnPages(size) ? size : 0), pages_(CheapestPages()) {}

void PageCommitter::Reach(std::size_t end) noexcept {
    end = std::min(end, size_);
    std::size_t begin = 0;
    Pages pages = Pages::Small;
    {
        const std::lock_guard lock(mutex_);
        if (end <= reached_) return;
        begin = reached_;
        pages = CheapestPages();
        if (pages != pages_) platform::AdvisePages(buffer_ + begin, size_ - begin, pages);
        pages_ = pages;
        end += Before(buffer_ + end, pages == Pages::Large ? unit : pageSize);
        reached_ = end;
    }
    if (pages == Pages::Small) {
        const std::size_t size = std::min(end, size_) - begin;
        costs.AddSmall(size, TimeToCommit(buffer_ + begin, size));
        return;
    }
    // Only what lies within the buffer is one page for sure. All of it is asked for, so that small ones that the system
    // gives instead are committed at once too.
    for (std::size_t at = begin + Before(buffer_ + begin, unit); at < end && at + unit <= size_; at += unit) {
        costs.AddLarge(TimeToCommit(buffer_ + at, unit));
    }
}

}  // namespace orvalo
