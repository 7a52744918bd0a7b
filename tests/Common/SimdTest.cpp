#include <algorithm>
#include <array>
#include <bit>
#include <cstdio>
#include <random>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "Common/Simd.h"

namespace orvalo {
namespace {

namespace fast = vectors;

/// Both twins give what asking byte by byte gives.
void ExpectMasks(const std::string& bytes) {
    for (const char wanted : {' ', '\n', bytes[40]}) {
        std::uint64_t nonDigits = 0;
        std::uint64_t found = 0;
        for (unsigned int i = 0; i < 64; ++i) {
            nonDigits |= std::uint64_t{bytes[i] < '0' || bytes[i] > '9'} << i;
            found |= std::uint64_t{bytes[i] == wanted} << i;
        }
        ASSERT_EQ(scalar::NonDigitMask(bytes.data()), nonDigits) << testing::PrintToString(bytes);
        ASSERT_EQ(fast::NonDigitMask(bytes.data()), nonDigits) << testing::PrintToString(bytes);
        ASSERT_EQ(scalar::ByteMask(bytes.data(), wanted), found) << testing::PrintToString(bytes);
        ASSERT_EQ(fast::ByteMask(bytes.data(), wanted), found) << testing::PrintToString(bytes);
        const auto count = static_cast<unsigned int>(std::popcount(found));
        ASSERT_EQ(scalar::CountBytes(bytes.data(), wanted), count) << testing::PrintToString(bytes);
        ASSERT_EQ(fast::CountBytes(bytes.data(), wanted), count) << testing::PrintToString(bytes);
    }
    const std::string after = bytes.back() + bytes;
    unsigned int starts = 0;
    bool blank = false;
    for (std::size_t i = 0; i <= 64; ++i) {
        const bool next = static_cast<unsigned char>(after[i]) <= ' ' || after[i] == ',';
        starts += i > 0 && blank && !next ? 1U : 0U;
        blank = next;
    }
    ASSERT_EQ(scalar::CountStarts(after.data() + 1), starts) << testing::PrintToString(bytes);
    ASSERT_EQ(fast::CountStarts(after.data() + 1), starts) << testing::PrintToString(bytes);
}

TEST(Simd, ClassifiesEveryByteBesideEveryOther) {
    for (unsigned int first = 0; first < 256; ++first) {
        for (unsigned int second = 0; second < 256; second += 4) {
            // Each pair within a word, across words and across vectors.
            std::string bytes;
            for (unsigned int i = 0; bytes.size() < 64; ++i) {
                bytes += static_cast<char>(first);
                bytes += static_cast<char>(second + i % 4);
                if (i % 8 == 6) bytes += '9';
            }
            ExpectMasks(bytes);
        }
    }
}

TEST(Simd, ConvertsEveryNumberInEveryPlace) {
    const auto convert = [](const std::array<std::string, 4>& texts) {
        std::array<std::uint32_t, 4> words{};
        std::array<std::uint32_t, 4> digits{};
        for (std::size_t i = 0; i < 4; ++i) {
            // Before a short number stands what is before it in its file, up to any byte.
            const std::string text = std::string("\xFF\x30\x7F", 4 - texts[i].size()) + texts[i];
            words[i] = LoadFour(text.data());
            digits[i] = texts[i].empty() ? 0 : 0x0F0F0F0FU << (32U - 8U * texts[i].size());
        }
        const std::uint64_t numbers = scalar::FourNumbers(words, digits);
        EXPECT_EQ(fast::FourNumbers(words, digits), numbers);
        return numbers;
    };
    constexpr std::string_view zeros = "000";
    for (std::uint64_t number = 0; number < 10000; ++number) {
        const std::string text = std::to_string(number);
        const std::string padded = std::string(zeros.substr(0, 4 - text.size())) + text;
        ASSERT_EQ(convert({text, "9999", padded, "0"}), number | 9999ULL << 16U | number << 32U);
        ASSERT_EQ(convert({"", text, "7", padded}), number << 16U | 7ULL << 32U | number << 48U);
    }
}

template <class SixteenDigits>
void ExpectDigits(std::uint32_t first, std::uint32_t second) {
    char padded[17];
    std::snprintf(padded, sizeof padded, "%08u%08u", first, second);
    const std::string expected = padded;
    const SixteenDigits digits(first, second);
    std::string written(16, '?');
    digits.StoreAt(written.data());
    ASSERT_EQ(written, expected);
    ASSERT_EQ(digits.Significant(), first + second == 0 ? digits.Significant() : expected.find_last_not_of('0') + 1);
}

TEST(Simd, WritesEveryDigitInEveryPlace) {
    std::mt19937 random(5);
    for (std::uint32_t number = 0; number < 10000; ++number) {
        for (const std::uint32_t scale : {1U, 100U, 10000U}) {
            const std::uint32_t other = number % 3 == 0 ? 0 : static_cast<std::uint32_t>(random() % 100000000);
            ExpectDigits<scalar::SixteenDigits>(number * scale % 100'000'000, other);
            ExpectDigits<fast::SixteenDigits>(number * scale % 100'000'000, other);
            ExpectDigits<scalar::SixteenDigits>(other, number * scale % 100'000'000);
            ExpectDigits<fast::SixteenDigits>(other, number * scale % 100'000'000);
        }
    }
}

TEST(Simd, GathersExtremesOfEachOfFourNumbers) {
    const auto expect = [](const auto& extremes, const std::array<std::int16_t, 4>& least,
                           const std::array<std::int16_t, 4>& greatest) {
        EXPECT_EQ(extremes.Least(), least);
        EXPECT_EQ(extremes.Greatest(), greatest);
    };
    std::mt19937_64 random(20241121);
    for (int i = 0; i < 1000; ++i) {
        scalar::Extremes one;
        fast::Extremes other;
        std::array<std::int16_t, 4> least = {32767, 32767, 32767, 32767};
        std::array<std::int16_t, 4> greatest = {-32768, -32768, -32768, -32768};
        // Now and then the ends of the range, and at times no number.
        for (int count = i % 5; count > 0; --count) {
            const std::uint64_t packed = random() % 4 == 0 ? 0x7FFF80000000FFFFU : random();
            one.Add(packed);
            other.Add(packed);
            for (unsigned int k = 0; k < 4; ++k) {
                const auto number = std::bit_cast<std::array<std::int16_t, 4>>(packed)[k];
                least[k] = std::min(least[k], number);
                greatest[k] = std::max(greatest[k], number);
            }
        }
        expect(one, least, greatest);
        expect(other, least, greatest);
    }
}

}  // namespace
}  // namespace orvalo
