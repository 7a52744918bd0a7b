#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

/// Bytes of text, one, four or eight at a time. They mean what they mean in ASCII, whatever locale is set.
namespace orvalo {

static_assert(std::endian::native == std::endian::little, "the first character is taken to be the lowest byte");

/// The value of a digit; 10 or more for any other character.
constexpr unsigned int DigitValue(char c) {
    return static_cast<unsigned char>(c - '0');
}

constexpr bool IsDigit(char c) {
    return DigitValue(c) < 10;
}

constexpr char ToLower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

inline std::uint32_t LoadFour(const char* p) {
    std::uint32_t word;
    std::memcpy(&word, p, sizeof word);
    return word;
}

inline std::uint64_t LoadEight(const char* p) {
    std::uint64_t word;
    std::memcpy(&word, p, sizeof word);
    return word;
}

/// A word of eight times the same byte.
constexpr std::uint64_t EightTimes(unsigned char byte) {
    return 0x0101010101010101U * std::uint64_t{byte};
}

/// The top bit of each byte of `word` that is less than `limit` (1 to 128). Exact up to the first such byte: bytes
/// after it may be marked too.
constexpr std::uint64_t BytesBelow(std::uint64_t word, unsigned char limit) {
    return (word - EightTimes(limit)) & ~word & EightTimes(0x80);
}

/// The top bit of each byte of `word` that is not a digit. Exact up to the first such byte: after a byte of 128 or
/// more a 9 may be marked too.
constexpr std::uint64_t NonDigits(std::uint64_t word) {
    const std::uint64_t x = word ^ EightTimes('0');
    return ((x + EightTimes(0x76)) | x) & EightTimes(0x80);
}

/// How many digits `word` begins with.
constexpr unsigned int LeadingDigits(std::uint64_t word) {
    return static_cast<unsigned int>(std::countr_zero(NonDigits(word))) / 8U;
}

}  // namespace orvalo
