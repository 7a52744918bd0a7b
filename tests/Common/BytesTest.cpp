#include <algorithm>
#include <bit>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "Common/Bytes.h"

namespace orvalo {
namespace {

TEST(Bytes, AreFoundEightAtATime) {
    constexpr unsigned char limits[] = {1, 14, '9', 128};
    std::mt19937 random(20241121);
    for (unsigned int i = 0; i < 256 * 4000; ++i) {
        // Every byte after some that are not sought, and before any.
        std::string text(8, '9');
        const unsigned int place = random() % 8;
        text[place] = static_cast<char>(i);
        for (unsigned int k = place + 1; k < 8; ++k) text[k] = static_cast<char>(random());
        const std::uint64_t word = LoadEight(text.data());
        const auto first = [&](auto sought) { return std::find_if(text.begin(), text.end(), sought) - text.begin(); };
        ASSERT_EQ(std::countr_zero(NonDigits(word)) / 8, first([](char c) { return c < '0' || c > '9'; })) << text;
        ASSERT_EQ(LeadingDigits(word), first([](char c) { return !IsDigit(c); })) << text;
        for (const unsigned char limit : limits) {
            ASSERT_EQ(std::countr_zero(BytesBelow(word, limit)) / 8,
                      first([=](char c) { return static_cast<unsigned char>(c) < limit; }))
                << text;
        }
    }
}

}  // namespace
}  // namespace orvalo
