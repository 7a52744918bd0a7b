#include <bit>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <random>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "Support/Emulated.h"
#include "Write/MaterialNumbers.h"
#include "Write/ShortestDecimal.h"
#include "Write/Times.h"
#include "Write/Wide.h"

namespace orvalo {
namespace {

std::string Written(double value) {
    char text[decimalRoom];
    return {text, WriteDecimal(text, value)};
}

/// The digits of a number in its text, without zeros around them.
std::string Digits(const std::string& text) {
    std::string digits = text.substr(0, text.find('e'));
    std::erase_if(digits, [](char c) { return c < '0' || c > '9'; });
    digits.erase(0, digits.find_first_not_of('0'));
    return digits.erase(digits.find_last_not_of('0') + 1);
}

/// By the standard library. On Windows strtod is not exact; elsewhere it is what all libraries have.
double ReadBack(const std::string& text) {
#if defined(_WIN32)
    double value = std::nan("");
    const char* const end = std::from_chars(text.data(), text.data() + text.size(), value).ptr;
#else
    char* end = nullptr;
    const double value = std::strtod(text.c_str(), &end);
#endif
    EXPECT_EQ(end, text.data() + text.size()) << text;
    return value;
}

/// Reads back to the bit, has the digits that the standard library finds, and is as short as its text at least.
void CheckDecimal(double value) {
    if (!std::isfinite(value) || value == 0) return;
    const std::string text = Written(value);
    ASSERT_EQ(std::bit_cast<std::uint64_t>(ReadBack(text)), std::bit_cast<std::uint64_t>(value)) << text;
    char theirs[64];
    const std::string shortest(theirs, std::to_chars(theirs, std::end(theirs), value).ptr);
    const std::string scientific(theirs,
                                 std::to_chars(theirs, std::end(theirs), value, std::chars_format::scientific).ptr);
    ASSERT_EQ(Digits(text), Digits(scientific));
    ASSERT_LE(text.size(), std::min(shortest.size(), longestDecimal)) << text;
}

#if defined(__SIZEOF_INT128__)

TEST(TwoWords, CalculateAsNumbersOf128Bits) {
    const auto shown = [](auto number) {
        return std::pair(static_cast<std::uint64_t>(number >> 64U), static_cast<std::uint64_t>(number));
    };
    std::mt19937_64 random(128);
    // With words of all lengths, all bits set among them.
    const auto word = [&] { return (random() % 4 == 0 ? ~std::uint64_t{0} : random()) >> random() % 64; };
    for (int i = 0; i < 10'000; ++i) {
        const std::uint64_t w[] = {word(), word(), word(), word()};
        const TwoWords a(w[0], w[1]);
        const TwoWords b(w[2], w[3]);
        const Wide c = Joined(w[0], w[1]);
        const Wide d = Joined(w[2], w[3]);
        const auto bits = static_cast<unsigned int>(1 + random() % 64);
        ASSERT_EQ(shown(TwoWords::Product(w[0], w[1])), shown(Product(w[0], w[1])));
        ASSERT_EQ(shown(a + b), shown(c + d));
        ASSERT_EQ(shown(a - b), shown(c - d));
        ASSERT_EQ(shown(a + w[2]), shown(c + w[2]));
        ASSERT_EQ(shown(a - w[2]), shown(c - w[2]));
        ASSERT_EQ(shown(a >> bits), shown(c >> bits));
    }
}

#endif

TEST(ShortestDecimal, HasTheDigitsOfTheStandardLibrary) {
    std::mt19937_64 random(1);
    for (int i = 0; i < (support::emulated ? 30'000 : 300'000); ++i) {
        CheckDecimal(std::bit_cast<double>(random()));
        CheckDecimal(static_cast<double>(random() % 10'000'000) / std::pow(10.0, static_cast<double>(random() % 9)));
        CheckDecimal(static_cast<double>(static_cast<std::int64_t>(random() >> random() % 64)));
    }
    for (int exponent = -1074; exponent < 1024; ++exponent) {
        const auto bits = std::bit_cast<std::uint64_t>(std::ldexp(1.0, exponent));
        for (std::uint64_t i = 0; i < 7; ++i) CheckDecimal(std::bit_cast<double>(bits - 3 + i));
        CheckDecimal(std::pow(10.0, exponent / 3));
    }
    for (std::uint64_t i = 1; i < 1000; ++i) CheckDecimal(std::bit_cast<double>(i));
}

TEST(ShortestDecimal, TakesTheShorterOfBothForms) {
    const struct {
        double value;
        const char* text;
    } cases[] = {{0, "0"},
                 {-0.0, "-0"},
                 {1, "1"},
                 {-12.5, "-12.5"},
                 {100, "100"},
                 {1000, "1e3"},
                 {123000, "123000"},
                 {5920000, "5.92e6"},
                 {0.05, "0.05"},
                 {0.001, "1e-3"},
                 {0.00125, "0.00125"},
                 {2.5e-300, "2.5e-300"},
                 {INFINITY, "1e999"},
                 {-INFINITY, "-1e999"},
                 {0x1p53, "9007199254740992"},
                 {5e-324, "5e-324"},
                 {123456.5, "123456.5"}};
    for (const auto& c : cases) EXPECT_EQ(Written(c.value), c.text);
}

TEST(Times, AreTheShortestThatReadBack) {
    std::mt19937_64 random(2);
    for (int i = 0; i < 20'000; ++i) {
        // As somebody writes it, with few digits, and as a program might.
        const int digits = 1 + i % 17;
        const double written = RoundedTo(digits, std::ldexp(static_cast<double>(random() >> 11U), -60 + i % 40));
        const auto found = Microseconds(written * 1e-6);
        ASSERT_TRUE(found) << written;
        ASSERT_EQ(*found * 1e-6, written * 1e-6);
        ASSERT_LE(Written(*found).size(), Written(written).size());
    }
    for (const double seconds : {0.0, -0.0, 5e-324, 1e-310, 1e306 * 1e-6, static_cast<double>(INFINITY)}) {
        ASSERT_TRUE(Microseconds(seconds));
        EXPECT_EQ(std::signbit(*Microseconds(seconds)), std::signbit(seconds));
        EXPECT_EQ(*Microseconds(seconds) * 1e-6, seconds);
    }
    // Of the doubles in a row none is a multiple of the double for a millionth here and there.
    int none = 0;
    double seconds = 5e-8;
    for (int i = 0; i < 1000; ++i) none += Microseconds(seconds = std::nextafter(seconds, 1.0)) ? 0 : 1;
    EXPECT_TRUE(none > 0 && none < 100) << none;
}

TEST(Times, OfStartsAreTheSameSteps) {
    std::mt19937 random(3);
    for (int i = 0; i < 20'000; ++i) {
        const double timeStep = RoundedTo(1 + i % 5, std::ldexp(1.0 + static_cast<double>(random() % 1000),
                                                                static_cast<int>(random() % 30) - 20)) *
                                1e-6;
        const auto steps = static_cast<int>(random() >> (1 + random() % 31));
        const auto start = StartMicroseconds(steps, timeStep);
        ASSERT_TRUE(start) << steps << " of " << timeStep;
        ASSERT_EQ(std::ceil(*start / (timeStep * 1e6)), steps);
    }
    EXPECT_EQ(Written(*StartMicroseconds(3, 0.05e-6)), "0.15");
    EXPECT_EQ(Written(*StartMicroseconds(7, 0.05e-6)), "0.35");
    EXPECT_EQ(Written(*StartMicroseconds(138, 0.04 * 1e-6)), "5.52");
    EXPECT_FALSE(StartMicroseconds(1, 0.0));
    EXPECT_EQ(StartMicroseconds(2, 1e302), 1.7976931348623157e308);
}

/// The material that comes of the numbers found, in the format found.
Material Remade(const MaterialNumbers& found) {
    const double(&n)[9] = found.numbers;
    Material material;
    if (found.format == 0) material.SetFormat0(n[0], n[1], n[2]);
    if (found.format == 1) material.SetFormat1(n[0], n[1], n[2]);
    return material;
}

void CheckMaterial(const Material& material, std::size_t longest) {
    const MaterialNumbers found = FindNumbers(material);
    ASSERT_GE(found.format, 0);
    const Material again = Remade(found);
    for (const auto member : {&Material::density, &Material::vp, &Material::vs, &Material::mu, &Material::lambda}) {
        ASSERT_TRUE(std::bit_cast<std::uint64_t>(again.*member) == std::bit_cast<std::uint64_t>(material.*member) ||
                    (std::isnan(again.*member) && std::isnan(material.*member)));
    }
    ASSERT_LE(Written(found.numbers[1]).size() + Written(found.numbers[2]).size(), longest);
}

TEST(MaterialNumbers, AreFoundWhateverTheFormat) {
    std::mt19937_64 random(4);
    std::uniform_real_distribution<double> uniform(0.0, 1.0);
    for (int i = 0; i < 400; ++i) {
        const int digits = 1 + i % 17;
        const auto number = [&](double scale) { return RoundedTo(digits, scale * (0.01 + uniform(random))); };
        const double density = number(1e-5);
        const double young = number(1e8);
        const double poisson = RoundedTo(digits, uniform(random) * (i % 2 == 0 ? 0.5 : -0.9));
        Material material;
        material.SetFormat1(density, young, poisson);
        // Other numbers of as many digits may give the same material.
        CheckMaterial(material, digits < 14 ? Written(young).size() + Written(poisson).size() : 2 * longestDecimal);
        const double speeds[] = {number(6e6), number(3e6)};
        material.SetFormat0(density, speeds[0], speeds[1]);
        CheckMaterial(material, Written(speeds[0]).size() + Written(speeds[1]).size());
    }
    const double odd[][3] = {{0, 0, 0},
                             {1, 1, 0.5},
                             {1, 1, 1},
                             {1, 1, -1},
                             {1, 0, -1},
                             {1, -1, 0.3},
                             {-1, 1, 0.3},
                             {1, 1, 0.7},
                             {1, 1, 2},
                             {1, 1, 1e-20},
                             {1e300, 1e-300, 0.1},
                             {0, 1, 0.3},
                             {1, INFINITY, 0.3},
                             {1, 1, INFINITY},
                             {INFINITY, 1, 0.2},
                             {1, 1, 0.49999999999}};
    for (const auto& n : odd) {
        Material material;
        material.SetFormat1(n[0], n[1], n[2]);
        SCOPED_TRACE(Written(n[0]) + ' ' + Written(n[1]) + ' ' + Written(n[2]));
        CheckMaterial(material, 2 * longestDecimal);
    }
}

}  // namespace
}  // namespace orvalo
