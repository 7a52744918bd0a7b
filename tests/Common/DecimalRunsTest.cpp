#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Common/DecimalRuns.h"
#include "Common/ParseNumber.h"

namespace orvalo {
namespace {

constexpr std::size_t readable = 16;

/// The values that a reader of rows finds, as bits, and where it ends. `fast` is how many runs had.
std::string ReadAll(const std::string& line, bool withRuns, std::size_t& fast) {
    std::string padded = line + '\n' + std::string(readable, '7');
    const char* const end = padded.data() + line.size();
    std::string all;
    DecimalRuns runs;
    for (const char* p = padded.data(); p < end;) {
        const char* const start = p;
        double values[3] = {};
        std::size_t read = withRuns ? runs.Read(p, end, values, std::size(values)) : 0;
        fast += read;
        if (read == 0) {
            p = ParseNumber(p, end, values[read++]);
            runs.Learn(start, p);
        }
        for (std::size_t i = 0; i < read; ++i) {
            all += std::to_string(std::bit_cast<std::uint64_t>(values[i])) + ' ';
        }
        // Not where a number ends, so that both stop at the same places: the next one begins after any byte.
        if (p < end) ++p;
    }
    return all;
}

TEST(DecimalRuns, GiveWhatFastDecimalGives) {
    const char* const formats[] = {"%.9e", "%.6e", "%.3E", "%.10g", "%.4f", "%.1f", "%.12f", "%g", "%.0f.", "%.2e0"};
    std::mt19937_64 random(20261122);
    for (unsigned int i = 0; i < 3000; ++i) {
        const auto below = [&](unsigned int bound) { return static_cast<unsigned int>(random() % bound); };
        const bool mixed = below(3) == 0;
        const char* format = formats[below(std::size(formats))];
        std::string line;
        for (unsigned int n = 1 + below(30); n > 0; --n) {
            if (mixed) format = formats[below(std::size(formats))];
            const double digits = static_cast<double>(static_cast<std::int64_t>(random())) * 1e-19;
            char text[64];
            std::snprintf(text, sizeof text, format, digits * std::pow(10.0, static_cast<int>(below(40)) - 20));
            line += std::string(text) + (n > 1 ? "\t" : "");
            // Bytes that are near to those of numbers, where they matter.
            if (below(12) == 0) line[below(static_cast<unsigned int>(line.size()))] = ",/:e.-+ 5\t\xB5"[below(11)];
        }
        std::size_t fast = 0;
        EXPECT_EQ(ReadAll(line, true, fast), ReadAll(line, false, fast)) << testing::PrintToString(line);
    }
}

TEST(DecimalRuns, ReadAllNumbersOfAForm) {
#if (defined(__x86_64__) || defined(__aarch64__)) && !defined(ORVALO_SCALAR)
#if defined(__x86_64__)
    if (__builtin_cpu_supports("ssse3") == 0) GTEST_SKIP() << "not by this processor";
#endif
    std::size_t fast = 0;
    ReadAll("-1.234567890e-04\t9.876543210e+12\t0.000000000E+00\t-1.000000000e-10\t7.5", true, fast);
    EXPECT_EQ(fast, 3U);
#else
    GTEST_SKIP() << "not by this build";
#endif
}

}  // namespace
}  // namespace orvalo
