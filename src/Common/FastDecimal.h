#pragma once

#include <array>
#include <bit>
#include <cfloat>
#include <cstddef>
#include <cstdint>

#include "Common/Bytes.h"

/// Decimal digits eight at a time. Every function may read up to eight bytes from the place it is given, so buffers
/// that are scanned carry at least that many readable bytes after their end.
namespace orvalo {

// Else products would be rounded twice, to the width of a register and to that of a double.
static_assert(FLT_EVAL_METHOD == 0, "arithmetic is to be rounded to its type: on 32-bit x86, -msse2 -mfpmath=sse");

/// The number that the first `count` (0 to 8) digits of `word` spell.
inline std::uint32_t DigitsValue(std::uint64_t word, unsigned int count) {
    // Moved to the end, with zeros before them, the digits are paired to two, then four, then eight places.
    std::uint64_t v = word & 0x0F0F0F0F0F0F0F0FU;
    v = count == 0 ? 0 : v << (64U - 8U * count);
    v = (v * 10 + (v >> 8U)) & 0x00FF00FF00FF00FFU;
    v = (v * 100 + (v >> 16U)) & 0x0000FFFF0000FFFFU;
    return static_cast<std::uint32_t>(v * 10000 + (v >> 32U));
}

namespace detail {

inline constexpr std::array<std::uint64_t, 9> digitScale = {1,      10,      100,      1000,     10000,
                                                            100000, 1000000, 10000000, 100000000};
inline constexpr std::array<double, 23> exactPower = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                      1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                      1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

/// Appends the digits at `p` to `mantissa`; returns the place after them. The place depends on branches alone, which
/// numbers of one format make predictable, so that a processor is far ahead in the text while it still multiplies.
inline const char* AppendDigits(const char* p, std::uint64_t& mantissa) {
    if (const std::uint64_t word = LoadEight(p); NonDigits(word) == 0) [[likely]] {
        mantissa = mantissa * digitScale[8] + DigitsValue(word, 8);
        p += 8;
    }
    for (; IsDigit(*p); ++p) mantissa = mantissa * 10 + DigitValue(*p);
    return p;
}

/// Adds the exponent at `p`, from its letter on, to `exponent`; returns the place after it, or null for one without
/// digits and for one of more than two.
inline const char* AddExponent(const char* p, std::ptrdiff_t& exponent) {
    const bool negative = *++p == '-';
    p += negative || *p == '+' ? 1 : 0;
    std::ptrdiff_t written = DigitValue(*p++);
    if (written > 9) return nullptr;
    if (IsDigit(*p)) [[likely]] {
        written = written * 10 + DigitValue(*p++);
    }
    exponent += negative ? -written : written;
    return IsDigit(*p) ? nullptr : p;
}

}  // namespace detail

/// Converts the decimal number at `p`: a sign, digits, a point, an exponent. Returns the place after it, or null when
/// there is none there or its value is not sure to be the correctly rounded one; the general conversion then decides.
/// The text must end in a byte that is neither sign nor digit, with eight readable bytes after it.
///
/// Exactness (Clinger 1990): an integer of at most 2^53 and a power of ten of at most 10^22 are both doubles, so
/// that their one product or quotient is correctly rounded.
inline const char* FastDecimal(const char* p, double& value) {
    constexpr std::ptrdiff_t surelyExact = 15;
    constexpr std::ptrdiff_t maxDigits = 19;  // Any number of so many fits 64 bits.
    constexpr std::uint64_t largestExact = std::uint64_t{1} << 53U;

    // Signs come in no order that could be predicted, so they are taken without a branch.
    const auto negative = static_cast<std::uint64_t>(*p == '-');
    p += negative | static_cast<std::uint64_t>(*p == '+');
    if (!IsDigit(*p) && (*p != '.' || !IsDigit(p[1]))) return nullptr;
    const char* const first = p;
    std::uint64_t mantissa = 0;
    if (p[1] == '.') [[likely]] {
        mantissa = DigitValue(*p++);
    } else {
        p = detail::AppendDigits(p, mantissa);
    }
    std::ptrdiff_t digits = p - first;
    std::ptrdiff_t exponent = 0;
    if (*p == '.') [[likely]] {
        const char* const fraction = p + 1;
        p = detail::AppendDigits(fraction, mantissa);
        exponent = fraction - p;
        digits -= exponent;
    }
    if (digits > surelyExact && (digits > maxDigits || mantissa > largestExact)) return nullptr;
    if ((*p | 0x20) == 'e') [[likely]] {
        p = detail::AddExponent(p, exponent);
        if (p == nullptr) return nullptr;
    }
    if (exponent < -22 || exponent > 22) return nullptr;
    // The factor carries the sign, for it is known before the digits are converted.
    const double power = detail::exactPower[static_cast<std::size_t>(exponent < 0 ? -exponent : exponent)];
    const double factor = std::bit_cast<double>(std::bit_cast<std::uint64_t>(power) ^ negative << 63U);
    const auto significand = static_cast<double>(static_cast<std::int64_t>(mantissa));
    value = exponent < 0 ? significand / factor : significand * factor;
    return p;
}

}  // namespace orvalo
