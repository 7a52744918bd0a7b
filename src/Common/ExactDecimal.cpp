#include "Common/ExactDecimal.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

#include "Common/Bytes.h"

namespace orvalo {

namespace {

/// More digits than these only tell whether there is something beyond them: halves between two doubles have no more.
constexpr std::size_t digitsThatCount = 768;

/// A natural number of any size, its lowest word first.
class BigNatural {
public:
    void MultiplyAndAdd(std::uint32_t factor, std::uint32_t summand) {
        std::uint64_t carry = summand;
        for (std::uint32_t& word : words_) {
            carry += std::uint64_t{word} * factor;
            word = static_cast<std::uint32_t>(carry);
            carry >>= 32U;
        }
        if (carry != 0) words_.push_back(static_cast<std::uint32_t>(carry));
    }

    void ShiftLeft(std::size_t bits) {
        for (; bits % 32 != 0; --bits) MultiplyAndAdd(2, 0);
        words_.insert(words_.begin(), bits / 32, 0);
    }

    void Subtract(const BigNatural& smaller) {
        std::uint64_t borrow = 0;
        for (std::size_t i = 0; i < words_.size(); ++i) {
            const std::uint64_t taken = borrow + (i < smaller.words_.size() ? smaller.words_[i] : 0);
            borrow = words_[i] < taken ? 1 : 0;
            words_[i] = static_cast<std::uint32_t>(words_[i] - taken);
        }
        while (!words_.empty() && words_.back() == 0) words_.pop_back();
    }

    bool IsLessThan(const BigNatural& other) const {
        if (words_.size() != other.words_.size()) return words_.size() < other.words_.size();
        return std::lexicographical_compare(words_.rbegin(), words_.rend(), other.words_.rbegin(), other.words_.rend());
    }

    bool IsZero() const { return words_.empty(); }
    std::size_t Bits() const { return 32 * words_.size() - static_cast<std::size_t>(std::countl_zero(words_.back())); }

private:
    /// The last one is not 0.
    std::vector<std::uint32_t> words_;
};

/// The digits that count, as an integer; adds to `exponent` how many places its last digit is left of the point.
BigNatural ReadDigits(std::string_view digits, std::int64_t& exponent) {
    BigNatural number;
    std::size_t read = 0;
    bool fraction = false;
    bool beyond = false;
    for (const char c : digits) {
        if (c == '.') {
            fraction = true;
            continue;
        }
        exponent -= fraction ? 1 : 0;
        if (read < digitsThatCount) {
            number.MultiplyAndAdd(10, DigitValue(c));
            read += number.IsZero() ? 0 : 1;
        } else {
            ++exponent;
            beyond = beyond || c != '0';
        }
    }
    if (beyond) {
        number.MultiplyAndAdd(10, 1);
        --exponent;
    }
    return number;
}

}  // namespace

double RoundBinary(std::uint64_t mantissa, std::int64_t exponent, bool sticky) {
    constexpr std::int64_t smallestNormal = -1022;
    constexpr std::int64_t precision = 53;
    if (mantissa == 0) return 0;
    const int shift = std::countl_zero(mantissa);
    mantissa <<= static_cast<unsigned int>(shift);
    exponent -= shift;
    const std::int64_t leading = exponent + 63;
    if (leading > 1023) return std::numeric_limits<double>::infinity();
    const std::int64_t kept = leading >= smallestNormal ? precision : precision - (smallestNormal - leading);
    if (kept < 0) return 0;
    const auto cut = static_cast<unsigned int>(64 - kept);
    std::uint64_t result = cut == 64 ? 0 : mantissa >> cut;
    const std::uint64_t half = std::uint64_t{1} << (cut - 1U);
    const std::uint64_t rest = mantissa & (half - 1U);
    if ((mantissa & half) != 0 && (rest != 0 || sticky || (result & 1U) != 0)) ++result;
    return std::ldexp(static_cast<double>(result), static_cast<int>(exponent) + static_cast<int>(cut));
}

double ExactDecimal(std::string_view digits, std::int64_t exponent) {
    // No double has a digit farther than that from the point: also keeps the numbers below small.
    constexpr std::int64_t farthest = 400;
    constexpr std::int64_t mostDigits = digitsThatCount + 1;
    BigNatural over = ReadDigits(digits, exponent);
    if (over.IsZero()) return 0;
    if (exponent > farthest) return std::numeric_limits<double>::infinity();
    if (exponent < -farthest - mostDigits) return 0;
    BigNatural under;
    under.MultiplyAndAdd(0, 1);
    for (; exponent > 0; --exponent) over.MultiplyAndAdd(10, 0);
    for (; exponent < 0; ++exponent) under.MultiplyAndAdd(10, 0);

    // Brought to the same length, the quotient is between a half and two. Its first 64 bits are enough to round by.
    const auto length = static_cast<std::int64_t>(over.Bits()) - static_cast<std::int64_t>(under.Bits());
    (length < 0 ? over : under).ShiftLeft(static_cast<std::size_t>(length < 0 ? -length : length));
    std::uint64_t quotient = 0;
    for (int bit = 0; bit < 64; ++bit) {
        quotient <<= 1U;
        if (!over.IsLessThan(under)) {
            over.Subtract(under);
            quotient |= 1U;
        }
        over.MultiplyAndAdd(2, 0);
    }
    return RoundBinary(quotient, length - 63, !over.IsZero());
}

}  // namespace orvalo
