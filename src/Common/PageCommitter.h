#pragma once

#include <cstddef>
#include <cstdint>
#include <mutex>

#include "Common/Platform.h"

namespace orvalo {

/// The kind of pages that has lately cost least to commit. Any thread may ask.
platform::Pages CheapestPages() noexcept;

/// Commits the pages of a buffer that AllocateToFill made, just before they are filled, with the pages that have cost
/// least. Several threads may fill it. Small pages are committed many at a time; large ones where the first byte of
/// one is reached.
class PageCommitter {
public:
    PageCommitter() = default;
    PageCommitter(void* buffer, std::size_t size);
    PageCommitter(const PageCommitter&) = delete;
    PageCommitter& operator=(const PageCommitter&) = delete;

    /// The first `end` bytes, at most all, are there or about to be filled with what is at hand.
    void Reach(std::uint64_t end) noexcept;

private:
    unsigned char* buffer_ = nullptr;
    /// 0 for a buffer whose pages are left alone.
    std::size_t size_ = 0;
    std::mutex mutex_;
    std::size_t reached_ = 0;
    platform::Pages pages_ = platform::Pages::Small;
};

}  // namespace orvalo
