#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <sys/mman.h>

#include "Common/Buffers.h"
#include "Common/PageCommitter.h"

// The linker sends the library's calls of madvise here: -Wl,--wrap=madvise.
namespace orvalo::faults {
namespace {

constexpr std::size_t mebibyte = std::size_t{1} << 20U;

/// What is asked of the system instead of committing pages: `L` and `S` for advice to make them large or small, `l`
/// for a large one, `s` for each MiB of small ones.
struct Advice {
    std::string asked;
    std::chrono::microseconds large{};
    std::chrono::microseconds smallMiB{300};
    /// Whether committing is more than the system knows how to do.
    bool unknown = false;
};
Advice* advice = nullptr;

}  // namespace
}  // namespace orvalo::faults

using namespace orvalo::faults;

extern "C" int __real_madvise(void* start, std::size_t size, int kind);
extern "C" int __wrap_madvise(void* start, std::size_t size, int kind) {
    if (advice == nullptr) return __real_madvise(start, size, kind);
    constexpr int populateWrite = 23;
    if (kind == MADV_HUGEPAGE) advice->asked += 'L';
    if (kind == MADV_NOHUGEPAGE) advice->asked += 'S';
    if (kind != populateWrite) return 0;
    if (advice->unknown) return errno = EINVAL, -1;
    const bool large = size == 2 * mebibyte;
    std::this_thread::sleep_for(large ? advice->large : advice->smallMiB * static_cast<int>(size / mebibyte));
    advice->asked += large ? "l" : std::string((size + mebibyte / 2) / mebibyte, 's');
    return 0;
}

namespace orvalo::faults {
namespace {

TEST(Pages, AreLargeWhereThoseCostLess) {
    constexpr std::size_t size = 400 * mebibyte;
    const auto buffer = AllocateToFill(size, 1);
    ASSERT_TRUE(buffer);
    Advice own;
    advice = &own;
    PageCommitter pages(buffer.get(), size);
    std::size_t reached = 0;
    const auto reach = [&](std::size_t more, int microseconds) {
        own.large = std::chrono::microseconds(microseconds);
        own.asked.clear();
        for (const std::size_t end = reached + more; reached < end; reached += mebibyte)
            pages.Reach(reached + mebibyte);
        return own.asked;
    };
    const auto count = [](const std::string& text, char c) { return std::count(text.begin(), text.end(), c); };
    EXPECT_EQ(reach(16 * mebibyte, 0), std::string(8, 'l'));
    // Two slow ones, then small ones, of which some come before one large page is tried, and twice as many after it.
    const std::string slow = reach(40 * mebibyte, 5000);
    EXPECT_EQ(slow.substr(0, 3), "llS");
    EXPECT_EQ(count(slow, 'l'), 2);
    // What lies before the large pages depends on where the buffer does.
    EXPECT_NEAR(static_cast<double>(count(slow, 's')), 35.0, 1.0);
    const std::string again = reach(130 * mebibyte, 5000);
    EXPECT_EQ(again.find('L'), again.find("LlS")) << again;
    EXPECT_EQ(count(again, 'l'), 1);
    const std::string fast = reach(120 * mebibyte, 0);
    EXPECT_EQ(count(fast, 'L'), 1) << fast;
    EXPECT_GT(count(fast, 'l'), 10) << fast;
    EXPECT_EQ(fast.back(), 'l');
    // Beyond its end there is nothing to commit, and what is there is so once.
    own.asked.clear();
    pages.Reach(reached);
    EXPECT_EQ(own.asked, "");
    advice = nullptr;
}

TEST(Pages, AreCommittedOneByOneWhereTheSystemIsOld) {
    constexpr std::size_t size = 8 * mebibyte;
    constexpr std::size_t page = 4096;
    const auto buffer = AllocateToFill(size, 1);
    ASSERT_TRUE(buffer);
    unsigned char* const firstWhole = buffer.get() + (page - reinterpret_cast<std::uintptr_t>(buffer.get()) % page);
    Advice own;
    own.unknown = true;
    advice = &own;
    // What another thread may have written is left.
    firstWhole[page] = 7;
    PageCommitter pages(buffer.get(), size);
    pages.Reach(5 * mebibyte);
    advice = nullptr;
    std::vector<unsigned char> there((size - page) / page);
    ASSERT_EQ(::mincore(firstWhole, there.size() * page, there.data()), 0);
    const auto firstOpen = std::find(there.begin() + 512, there.end(), 0);
    EXPECT_GE(firstOpen - there.begin(), static_cast<std::ptrdiff_t>(5 * mebibyte / page - 1));
    EXPECT_LE(firstOpen - there.begin(), static_cast<std::ptrdiff_t>(7 * mebibyte / page));
    EXPECT_EQ(firstWhole[page], 7);
}

}  // namespace
}  // namespace orvalo::faults
