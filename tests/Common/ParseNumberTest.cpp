#include <algorithm>
#include <bit>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <sstream>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "Common/ExactDecimal.h"
#include "Common/ParseNumber.h"
#include "Support/Emulated.h"
#include "Support/ModelFiles.h"

namespace orvalo {
namespace {

/// The process is in the "C" locale, so strtod is what the functions must equal, in every bit and in the place.
testing::AssertionResult LikeStrtod(const std::string& text) {
    char* expectedEnd = nullptr;
    double expected = std::strtod(text.c_str(), &expectedEnd);
    const auto extent = expectedEnd - text.c_str();
#if defined(_WIN32)
    // Its strtod keeps a sign that no number follows, and takes the brackets after nan otherwise.
    if (extent == 0) expected = 0;
    if (std::isnan(expected)) return testing::AssertionSuccess();
#endif
    const std::string padded = text + std::string(16, '\0');
    double value = -1;
    bool same = ParseNumber(padded.data(), padded.data() + text.size(), value) - padded.data() == extent;
    same = same && std::bit_cast<std::uint64_t>(value) == std::bit_cast<std::uint64_t>(expected);
    if (same && extent != 0 && text.find_first_not_of("0123456789.eE+-") == std::string::npos) {
        const std::string number = text.substr(0, static_cast<std::size_t>(extent));
        value = DecimalValue(number);
        same = std::bit_cast<std::uint64_t>(value) == std::bit_cast<std::uint64_t>(expected);
        // What stands in where the standard library does not convert such numbers.
        const std::size_t sign = number.find_first_not_of("+-");
        const std::size_t mark = std::min(number.find_first_of("eE"), number.size());
        const long long exponent = mark == number.size() ? 0 : std::strtoll(number.c_str() + mark + 1, nullptr, 10);
        constexpr long long limit = 1'000'000'000'000;
        value = ExactDecimal(number.substr(sign, mark - sign), std::clamp(exponent, -limit, limit));
        same = same && value == std::fabs(expected);
    }
    if (same) return testing::AssertionSuccess();
    return testing::AssertionFailure() << '"' << text << "\": " << value << " is not " << expected << " or not of "
                                       << extent << " characters";
}

// Between bars, # for 400 zeros and @ for 800 nines. Extents first; then both sides of the fast path (19 and 20 digits,
// 2^53, powers of ten beyond 22), both ends of the range, halves between two doubles; then hexadecimal numbers,
// infinities and payloads in the same way.
const std::string numbers =
    "|-|+|.|e5|-.e1|1|007|1.|.5|1..5|1.5.5|1,5|--1|+-1|- 1|1e|1e+|1e-|1e5|1E+5|1e-5|1e5.5|1ee5|1e 5|1d5|1_0|-0|"
    "-0e5|1f|1234567890123456789|12345678901234567890|0.1234567890123456789|0.12345678901234567890|"
    "9007199254740992|9007199254740993|9007199254740993e1|1e22|1e23|1e-22|1e-23|123456789e0022|1e00022|"
    "-1.234567890e-03|99999999999999999999.9999999999999999999|0e99999999999999999999|1e99999999999999999999|"
    "1e-99999999999999999999|1.7976931348623157e308|1.7976931348623158e308|1.7976931348623159e308|1.8e308|1e400|"
    "2817628330883637e13|2.2250738585072014e-308|2.2250738585072011e-308|4.9406564584124654e-324|"
    "2.4703282292062327e-324|2.4703282292062328e-324|2e-324|1e-400|"
    "0x|0x.|0xg|0x.g|0x1|0X1F|0x1.|0x.8|0x1.8p1|0x1p|0x1p+|0x1p-3|0x1P3|"
    "0x1e5|0x1.fffffffffffff7p0|0x1.fffffffffffff8p0|0x1.fffffffffffffp1023|0x1.fffffffffffff8p1023|0x1p1024|"
    "0x1p-1074|0x1p-1075|0x1.8p-1075|0x1.000001p-1075|0x1p-1076|0x0.0000000001p-1040|0x1.8p-1074|"
    "0x1.7ffffffffffffp-1074|0x1.fffffffffffffp-1023|0x123456789abcdef012345|0x12345678901234567.8|"
    "0x10000000000000800000000000000000|0x10000000000000800000000000000001|0x0p99999999999999999999|"
    "0x1p99999999999999999999|0x1p-99999999999999999999|00x1|0x-1|0x1.8.8|inf|INF|Infinity|infinit|infinityx|in|"
    "i|infx|nan|NaN|na|nanx|nan(|nan()|nan(1)|nan(1.2)|nan(0x1F)|nan(0x)|nan(017)|nan(08)|nan(abc)|nan(a_1)|"
    "nan(12345678901234567890)|nan(99999999999999999999)|nan(2251799813685247)|nan(2251799813685248)|"
    "nan(4503599627370495)|nan(-1)|nan( 1)|nan(1|nan(0X7fffffffffffffff)|nan (1)|nan(0)|"
    "1#e-400|0.#1e401|#1.#|@e-1000|0.@|9007199254740993.#|9007199254740993.#1|0.#1e99999999999999999999|"
    "1#e-99999999999999999999";

TEST(ParseNumber, TakesTheLongestPrefixThatStrtodTakes) {
    std::istringstream stream(numbers);
    for (std::string number; std::getline(stream, number, '|');) {
        number = support::Replaced(support::Replaced(number, "#", std::string(400, '0')), "@", std::string(800, '9'));
        for (const char* const before : {"", "-", "+", " \t\n\v\f\r", " -"}) {
            for (const char* const after : {"", "\t1", "\n", "e", "x"})
                EXPECT_TRUE(LikeStrtod(before + number + after));
        }
    }
    EXPECT_TRUE(LikeStrtod("\x85 1"));
}

TEST(ParseNumber, EqualsStrtodOnWhateverIsWritten) {
    std::mt19937_64 random(20240817);
    char text[2000];
    constexpr std::string_view alphabet = "0123456789012345....eE+-xXpPaAfFinNtyINFTY() \t\r\n";
    for (int i = 0; i < (support::emulated ? 10'000 : 100'000); ++i) {
        const std::uint64_t bits = random();
        const int digits = i % 100 == 0 ? 800 : static_cast<int>(bits % 20);
        const auto any = std::bit_cast<double>(bits);
        const double usual =
            std::ldexp(static_cast<double>(static_cast<std::int64_t>(bits)), -70 + static_cast<int>(bits % 20));
        for (const char* format : {"%.*e", "%.*f", "%.*a"}) {
            for (const double number : {usual, any}) {
                std::snprintf(text, sizeof text, format, digits, number);
                ASSERT_TRUE(LikeStrtod(text));
            }
        }
        std::string noise;
        for (std::uint64_t length = random() % 24; length > 0; --length) noise += alphabet[random() % alphabet.size()];
        for (const std::string& noisy : {noise, "0x" + noise, "nan(" + noise + ")"}) ASSERT_TRUE(LikeStrtod(noisy));
    }
}

TEST(ParseNumber, TakesLinearTimeForManyDigits) {
    for (const char digit : {'0', '9'}) {
        for (const char* const start : {"", "0.", "0x", "1e", "-1."}) {
            const std::string text = start + std::string(2'000'000, digit);
            const std::string padded = text + std::string(16, '\0');
            const auto before = std::chrono::steady_clock::now();
            double value;
            EXPECT_EQ(ParseNumber(padded.data(), padded.data() + text.size(), value), padded.data() + text.size());
            EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(2));
        }
    }
}

}  // namespace
}  // namespace orvalo
