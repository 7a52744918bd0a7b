#include <algorithm>
#include <limits>

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Results/FailingAllocations.h"
#include "Results/ResultsFiles.h"

namespace orvalo {
namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool sanitized = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
constexpr bool sanitized = true;
#else
constexpr bool sanitized = false;
#endif
#else
constexpr bool sanitized = false;
#endif

/// Reads the file while only so many allocations succeed. Returns 0 or the code of the error.
int ReadWith(std::size_t allocations, const std::string& path) {
    ResultsReader reader(path);
    allocationsLeft = allocations;
    int code = 0;
    try {
        delete reader.Execute();
    } catch (const Exception& error) {
        code = error.code();
    }
    allocationsLeft = std::numeric_limits<std::size_t>::max();
    return code;
}

TEST(Memory, MayEndAtAnyAllocation) {
    for (const std::string& content :
         {std::string("x\ty\tz\tf\ta name that is too long to be kept in place\n1\t2\t3\t4\t5\n"),
          MatHeader() + Values(2, {1, 2}).Bytes() + Indices(3, {1, 2, 3}).Bytes()}) {
        const TemporaryFile file(content);
        std::size_t allocations = 0;
        while (ReadWith(allocations, file.Path()) == 102) ++allocations;
        EXPECT_GT(allocations, 5U);
        EXPECT_EQ(ReadWith(allocations, file.Path()), 0);
    }
}

/// The most memory in bytes that a process of its own comes to hold while it reads the file; 0 without a path.
std::size_t PeakMemory(const std::string& path) {
    const pid_t child = ::fork();
    if (child == 0) {
        if (!path.empty()) ReadWith(std::numeric_limits<std::size_t>::max(), path);
        ::_exit(0);
    }
    rusage usage{};
    int status = 0;
    ::wait4(child, &status, 0, &usage);
    return static_cast<std::size_t>(usage.ru_maxrss) * 1024;
}

TEST(Memory, IsNotTakenOnTheWordOfAFile) {
    if (sanitized) GTEST_SKIP() << "sanitizers take memory of their own";
    // Rows that each lie in a leaf of the lookup of their own, in as few bytes as possible.
    std::string sparseText = "x\ty\tz\tf\tu\n511.1\n";
    for (int y = 0; y < 65536; ++y) sparseText += "\t" + std::to_string(y) + ".1\n";
    std::vector<short> sparse(3 * 100000);
    for (std::size_t i = 0; i < 100000; ++i) {
        sparse[i] = static_cast<short>(i * 7919 % 1500);
        sparse[i + 100000] = static_cast<short>(i * 104729 % 1700);
        sparse[i + 200000] = static_cast<short>(i * 15485863 % 1600);
    }
    const std::string contents[] = {
        sparseText,
        MatHeader() + Values(1, std::vector<double>(100000)).Bytes() + Indices(3, sparse).Bytes(),
        MatHeader() + Values(1, {1}).Bytes({{1, 4000000048U}, {8, 500000000U}, {11, 4000000000U}}),
        MatHeader() + Indices(3, {1, 2, 3}).Bytes({{1, 4200000048U}, {8, 700000000U}, {11, 4200000000U}}),
        MatHeader() + Values(1, {1, 2}).Bytes() + Indices(3, {-32768, 32767, -32767, 32767, 0, 0}).Bytes(),
        "x\ty\tz\tf\tu\n\n",
    };
    const std::size_t none = PeakMemory("");
    for (const std::string& content : contents) {
        const TemporaryFile file(content);
        const std::size_t peak = PeakMemory(file.Path());
        EXPECT_LE(peak - std::min(peak, none), 256 * content.size() + (std::size_t{64} << 20U)) << content.size();
        EXPECT_TRUE(content.size() > 1024 || peak - std::min(peak, none) <= std::size_t{64} << 20U);
    }
}

}  // namespace
}  // namespace orvalo
