#include "Common/PageCommitter.h"

#include <algorithm>
#include <chrono>
#include <cstdint>

#include "Common/Buffers.h"
#include "Common/PageCosts.h"

namespace orvalo {

namespace {

using platform::Pages;
using Nanoseconds = PageCosts::Nanoseconds;

constexpr std::size_t pageSize = 4096;
constexpr std::size_t unit = PageCosts::unit;

#if defined(__MINGW32__)
// Constant by the compiler's optimisation, as the regions of buffers are.
PageCosts costs;
#else
constinit PageCosts costs;
#endif

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

void PageCommitter::Reach(std::uint64_t reached) noexcept {
    auto end = static_cast<std::size_t>(std::min<std::uint64_t>(reached, size_));
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
