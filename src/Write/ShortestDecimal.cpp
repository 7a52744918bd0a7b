#include "Write/ShortestDecimal.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <string_view>

#include "Common/Simd.h"
#include "Write/PowersOfTen.h"
#include "Write/Wide.h"

namespace orvalo {

namespace {

constexpr unsigned int mantissaBits = 52;
constexpr std::uint64_t hiddenBit = std::uint64_t{1} << mantissaBits;

/// A product over 2^64; odd where bits were cut off that matter.
std::uint64_t RoundedToOdd(Wide product) {
    const auto cut = static_cast<std::uint64_t>(product);
    return static_cast<std::uint64_t>(product >> 64U) | (cut > 1 ? 1 : 0);
}

// Logarithms as products with rounded-off constants, exact for every exponent that a double has.
constexpr int FloorLog10OfPowerOfTwo(int e) {
    return (e * 1262611) >> 22;
}
constexpr int FloorLog10OfThreeQuartersOfPowerOfTwo(int e) {
    return (e * 1262611 - 524031) >> 22;
}
constexpr int FloorLog2OfPowerOfTen(int e) {
    return (e * 1741647) >> 19;
}

/// The significant digits of a decimal, in registers, since what has just been stored can be loaded only after a while.
class Significand {
public:
    static constexpr unsigned int mostDigits = 17;

    explicit Significand(Decimal decimal) {
        constexpr std::uint32_t eight = 100'000'000;
        constexpr std::uint64_t sixteen = std::uint64_t{eight} * eight;
        // Normal numbers have 16 or 17 digits.
        for (; decimal.digits < sixteen; --decimal.exponent) decimal.digits *= 10;
        first = decimal.exponent + static_cast<int>(mostDigits) - 1;
        const std::uint64_t rest = decimal.digits % sixteen;
        leading_ = static_cast<char>('0' + decimal.digits / sixteen);
        rest_ = simd::SixteenDigits(static_cast<std::uint32_t>(rest / eight), static_cast<std::uint32_t>(rest % eight));
        count = 1 + rest_.Significant();
    }

    /// Stores all 17 digits, those that are not significant too.
    void StoreAt(char* p) const {
        *p = leading_;
        StoreRestAt(p + 1);
    }
    void StoreRestAt(char* p) const { rest_.StoreAt(p); }
    char Leading() const { return leading_; }

    /// How many digits are significant.
    unsigned int count;
    /// The power of ten of the first digit.
    int first;

private:
    char leading_;
    simd::SixteenDigits rest_{0, 0};
};

char* WriteExponent(char* p, int exponent) {
    *p++ = 'e';
    if (exponent < 0) *p++ = '-';
    const auto magnitude = static_cast<unsigned int>(exponent < 0 ? -exponent : exponent);
    if (magnitude >= 100) *p++ = static_cast<char>('0' + magnitude / 100);
    if (magnitude >= 10) *p++ = static_cast<char>('0' + magnitude / 10 % 10);
    *p++ = static_cast<char>('0' + magnitude % 10);
    return p;
}

/// Writes a number without exponent, with a few zeros before or after its digits: where there are more, an exponent is
/// shorter.
char* WriteFixed(char* p, const Significand& digits) {
    if (digits.first < 0) {
        constexpr std::array<char, 8> zeros = {'0', '.', '0', '0', '0', '0', '0', '0'};
        std::memcpy(p, zeros.data(), zeros.size());
        digits.StoreAt(p + 1 - digits.first);
        return p + 1 - digits.first + digits.count;
    }
    const auto whole = static_cast<unsigned int>(digits.first) + 1;
    digits.StoreAt(p);
    if (whole >= digits.count) {
        std::memset(p + digits.count, '0', 8);
        return p + whole;
    }
    char fraction[Significand::mostDigits];
    std::memcpy(fraction, p + whole, sizeof fraction);
    p[whole] = '.';
    std::memcpy(p + whole + 1, fraction, sizeof fraction);
    return p + digits.count + 1;
}

char* WriteScientific(char* p, const Significand& digits) {
    p[0] = digits.Leading();
    p[1] = '.';
    digits.StoreRestAt(p + 2);
    return WriteExponent(digits.count == 1 ? p + 1 : p + digits.count + 1, digits.first);
}

}  // namespace

// The algorithm is Schubfach (R. Giulietti, 2020): of the decimals with as many digits as tell doubles of that size
// apart, and of those with one digit less, at most a few lie where rounding takes them to the number, and all of these
// comparisons are right with the number's 126 leading bits if what was cut off leaves its mark in the last one.
Decimal ShortestDigits(double value) {
    const auto bits = std::bit_cast<std::uint64_t>(value);
    const auto biased = static_cast<int>(bits >> mantissaBits & 0x7FFU);
    const std::uint64_t fraction = bits & (hiddenBit - 1);
    const std::uint64_t c = biased == 0 ? fraction : fraction | hiddenBit;
    const int q = (biased == 0 ? 1 : biased) - 1075;
    // Below a power of two doubles lie twice as close.
    const bool closerBelow = fraction == 0 && biased > 1;
    const std::uint64_t odd = c & 1U;
    const int k = closerBelow ? FloorLog10OfThreeQuartersOfPowerOfTwo(q) : FloorLog10OfPowerOfTwo(q);
    const LeadingBits& power = powersOfTen[static_cast<std::size_t>(-k - leastPowerOfTen)];
    const auto shift = static_cast<unsigned int>(q + FloorLog2OfPowerOfTen(-k) + 1);
    // A product has 192 bits, of which the lowest 64 only matter for what they carry to the others. The ends of the
    // interval lie two quarters of the last bit away, or one.
    const std::uint64_t factor = 4 * c << shift;
    const Wide low = Product(power.low, factor);
    const Wide exact = Product(power.high, factor) + static_cast<std::uint64_t>(low >> 64U);
    const auto cut = static_cast<std::uint64_t>(low);
    const Wide wholePower = Joined(power.high, power.low);
    const unsigned int up = shift + 1;
    const unsigned int down = closerBelow ? shift : shift + 1;
    const std::uint64_t carry = cut + (power.low << up) < cut ? 1 : 0;
    const std::uint64_t borrow = cut < power.low << down ? 1 : 0;
    const std::uint64_t middle = RoundedToOdd(exact);
    const std::uint64_t lower = RoundedToOdd(exact - (wholePower >> (64U - down)) - borrow) + odd;
    const std::uint64_t upper = RoundedToOdd(exact + (wholePower >> (64U - up)) + carry) - odd;
    const std::uint64_t s = middle / 4;
    const std::uint64_t tenth = s / 10;
    // Which of these hold comes in no order that could be predicted, so nothing branches on it.
    const std::uint64_t tenBelowFits = lower <= 40 * tenth ? 1 : 0;
    const std::uint64_t tenAboveFits = 40 * tenth + 40 <= upper ? 1 : 0;
    const std::uint64_t belowFits = lower <= 4 * s ? 1 : 0;
    const std::uint64_t aboveFits = 4 * s + 4 <= upper ? 1 : 0;
    const std::uint64_t nearerAbove = middle > 4 * s + 2 - (s & 1U) ? 1 : 0;
    const std::uint64_t oneFits = belowFits ^ aboveFits;
    const std::uint64_t longer = s + ((oneFits & aboveFits) | ((oneFits ^ 1U) & nearerAbove));
    const std::uint64_t shorter = 10 * (tenth + tenAboveFits);
    const std::uint64_t takesShorter = 0 - (tenBelowFits ^ tenAboveFits);
    return {(shorter & takesShorter) | (longer & ~takesShorter), k};
}

char* WriteInteger(char* p, std::uint64_t value) {
    return std::to_chars(p, p + std::numeric_limits<std::uint64_t>::digits10 + 1, value).ptr;
}

char* WriteDecimal(char* p, double value) {
    *p = '-';
    p += std::signbit(value) ? 1 : 0;
    value = std::abs(value);
    if (value == 0) {
        *p = '0';
        return p + 1;
    }
    if (std::isinf(value)) {
        constexpr std::string_view overflowing = "1e999";
        return std::copy(overflowing.begin(), overflowing.end(), p);
    }
    const Significand digits(ShortestDigits(value));
    // Characters besides the digits: a point and zeros, or a point and an exponent.
    const int missing = digits.first + 1 - static_cast<int>(digits.count);
    const int inFixed = digits.first < 0 ? 1 - digits.first : missing < 0 ? 1 : missing;
    const int magnitude = digits.first < 0 ? -digits.first : digits.first;
    const int inScientific = (digits.count > 1 ? 1 : 0) + (digits.first < 0 ? 2 : 1) + 1 + (magnitude > 9 ? 1 : 0) +
                             (magnitude > 99 ? 1 : 0);
    return inFixed <= inScientific ? WriteFixed(p, digits) : WriteScientific(p, digits);
}

}  // namespace orvalo
