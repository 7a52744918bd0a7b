#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <vector>

#include <gtest/gtest.h>
#include <sys/mman.h>

#include "Common/Buffers.h"
#include "Common/PageCommitter.h"
#include "Common/PageCosts.h"

// The linker sends the library's calls of madvise here: -Wl,--wrap=madvise.
namespace orvalo::faults {
namespace {

constexpr std::size_t mebibyte = std::size_t{1} << 20U;

/// What is asked of the system instead of committing pages.
struct Advice {
    std::size_t committed = 0;
    /// Whether committing is more than the system knows how to do.
    bool unknown = false;
};
Advice* advice = nullptr;

}  // namespace
}  // namespace orvalo::faults

using namespace orvalo::faults;
using namespace std::chrono_literals;

extern "C" int __real_madvise(void* start, std::size_t size, int kind);
extern "C" int __wrap_madvise(void* start, std::size_t size, int kind) {
    if (advice == nullptr) return __real_madvise(start, size, kind);
    constexpr int populateWrite = 23;
    if (kind != populateWrite) return 0;
    if (advice->unknown) return errno = EINVAL, -1;
    advice->committed += size;
    return 0;
}

namespace orvalo::faults {
namespace {

TEST(Pages, AreLargeWhereThoseCostLess) {
    using platform::Pages;
    PageCosts costs;
    const auto large = [&](unsigned int count, std::chrono::nanoseconds each) {
        for (unsigned int i = 0; i < count; ++i) costs.AddLarge(each.count());
        return costs.Cheapest();
    };
    const auto small = [&](unsigned int mebibytes) {
        for (unsigned int i = 0; i < mebibytes; ++i) costs.AddSmall(mebibyte, std::chrono::nanoseconds(300us).count());
        return costs.Cheapest();
    };
    EXPECT_EQ(large(9, 900us), Pages::Large);
    // A second slow one in a row is enough; then one is tried after some small ones, and after twice as many.
    EXPECT_EQ(large(1, 5ms), Pages::Large);
    EXPECT_EQ(large(1, 5ms), Pages::Small);
    EXPECT_EQ(small(63), Pages::Small);
    EXPECT_EQ(small(1), Pages::Large);
    EXPECT_EQ(large(1, 5ms), Pages::Small);
    EXPECT_EQ(small(127), Pages::Small);
    EXPECT_EQ(small(1), Pages::Large);
    // What counts as slow is what small ones took, and a fast one makes up for all before it.
    EXPECT_EQ(large(1, 500us), Pages::Large);
    EXPECT_EQ(large(2, 900us), Pages::Small);
    EXPECT_EQ(small(63), Pages::Small);
    EXPECT_EQ(small(1), Pages::Large);
}

TEST(Pages, AreCommittedOnce) {
    constexpr std::size_t size = 64 * mebibyte;
    const auto buffer = AllocateToFill(size, 1);
    ASSERT_TRUE(buffer);
    Advice own;
    advice = &own;
    PageCommitter pages(buffer.get(), size);
    for (std::size_t reached = 0; reached < size; reached += mebibyte) {
        pages.Reach(reached + mebibyte);
        pages.Reach(reached + mebibyte / 2);
    }
    pages.Reach(2 * size);
    advice = nullptr;
    // Large pages begin and end within the buffer, and where one kind follows the other.
    EXPECT_GE(own.committed, size - 4 * PageCosts::unit);
    EXPECT_LE(own.committed, size + 2 * mebibyte);
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
