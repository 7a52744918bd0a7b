#pragma once

#include <cstddef>
#include <cstdint>

/// Numbers in the fewest characters that read back as the same number.
namespace orvalo {

/// No number takes more characters.
inline constexpr std::size_t longestDecimal = 24;
/// So much of a buffer may be written to while a number is.
inline constexpr std::size_t decimalRoom = 64;

/// Decimal digits, and the power of ten that they are multiplied with.
struct Decimal {
    std::uint64_t digits;
    int exponent;
};

/// Of a finite positive number: the fewest digits that no other double is nearer to, and of those the nearest ones; at
/// most 17, zeros at their end not counted.
Decimal ShortestDigits(double value);

/// Writes a number, which is no NaN, to `p` and returns the place after it. Takes up to `longestDecimal` characters,
/// and may use `decimalRoom` bytes. Infinities are written as 1e999, which overflows to them.
char* WriteDecimal(char* p, double value);

/// The same for a whole number.
char* WriteInteger(char* p, std::uint64_t value);

}  // namespace orvalo
