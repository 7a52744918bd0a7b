#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>

#include "Common/Bytes.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#elif defined(__aarch64__)
#include "Common/SimdNeon.h"
#endif

/// The few functions that pay for vector instructions, each with a scalar twin that gives the same for every input.
/// Callers take those of `simd`: the vector instructions that every processor of the target has, or the scalar twins
/// where there are none or the build leaves them out.
namespace orvalo {

namespace scalar {

/// Which of the 64 bytes at `p` are not digits; the lowest bit is the first byte.
inline std::uint64_t NonDigitMask(const char* p) {
    std::uint64_t mask = 0;
    for (unsigned int i = 0; i < 64; i += 8) {
        // Unlike NonDigits exact for every byte: without the top bits nothing is carried into the next one.
        const std::uint64_t x = LoadEight(p + i) ^ EightTimes('0');
        const std::uint64_t others = (((x & EightTimes(0x7F)) + EightTimes(0x76)) | x) & EightTimes(0x80);
        // The product gathers the lowest bit of every byte in the highest byte.
        mask |= ((others >> 7U) * 0x0102040810204080U >> 56U) << i;
    }
    return mask;
}

/// Which of the 64 bytes at `p` are `byte`.
inline std::uint64_t ByteMask(const char* p, char byte) {
    std::uint64_t mask = 0;
    for (unsigned int i = 0; i < 64; ++i) mask |= std::uint64_t{p[i] == byte} << i;
    return mask;
}

/// How many of the 64 bytes at `p` are `byte`.
inline unsigned int CountBytes(const char* p, char byte) {
    return static_cast<unsigned int>(std::popcount(ByteMask(p, byte)));
}

/// How many of the 64 bytes at `p` are no blanks but follow one, where a comma and any byte up to the space are blanks.
inline unsigned int CountStarts(const char* p) {
    const auto isBlank = [](char c) { return static_cast<unsigned char>(c) <= ' ' || c == ','; };
    unsigned int count = 0;
    for (int i = 0; i < 64; ++i) count += !isBlank(p[i]) && isBlank(p[i - 1]) ? 1U : 0U;
    return count;
}

/// Converts four numbers of up to four digits at once. Each of `words` holds the four bytes up to the end of a number,
/// each of `digits` the bits of them that count: the low four of every digit. The result has 16 bits for each number,
/// the first one lowest.
inline std::uint64_t FourNumbers(const std::array<std::uint32_t, 4>& words,
                                 const std::array<std::uint32_t, 4>& digits) {
    std::uint64_t numbers = 0;
    for (unsigned int i = 0; i < 4; ++i) {
        // Digits to pairs, pairs to numbers.
        std::uint32_t v = words[i] & digits[i];
        v = (v * 10 + (v >> 8U)) & 0x00FF00FFU;
        numbers |= std::uint64_t{static_cast<std::uint16_t>(v * 100 + (v >> 16U))} << (16 * i);
    }
    return numbers;
}

/// The least and the greatest of each of four signed 16-bit numbers that are packed into words.
class Extremes {
public:
    void Add(std::uint64_t packed) {
        for (unsigned int i = 0; i < 4; ++i) {
            const auto number = static_cast<std::int16_t>(static_cast<std::uint16_t>(packed >> (16 * i)));
            least_[i] = std::min(least_[i], number);
            greatest_[i] = std::max(greatest_[i], number);
        }
    }

    /// Of no words 32767.
    std::array<std::int16_t, 4> Least() const { return least_; }
    /// Of no words -32768.
    std::array<std::int16_t, 4> Greatest() const { return greatest_; }

private:
    static constexpr std::int16_t min = std::numeric_limits<std::int16_t>::min();
    static constexpr std::int16_t max = std::numeric_limits<std::int16_t>::max();

    std::array<std::int16_t, 4> least_ = {max, max, max, max};
    std::array<std::int16_t, 4> greatest_ = {min, min, min, min};
};

/// The decimal digits of two numbers below 10^8, sixteen characters with zeros before each number's digits.
class SixteenDigits {
public:
    SixteenDigits(std::uint32_t first, std::uint32_t second) : words_{Eight(first), Eight(second)} {}

    /// How many digits there are without the zeros at the end.
    unsigned int Significant() const {
        // A zero word has 64 leading zeros, and so counts as no digits.
        const bool secondCounts = words_[1] != 0;
        const auto zeros = static_cast<unsigned int>(std::countl_zero(words_[secondCounts ? 1 : 0])) / 8;
        return (secondCounts ? 16U : 8U) - zeros;
    }

    void StoreAt(char* p) const {
        for (std::size_t i = 0; i < 2; ++i) {
            const std::uint64_t text = words_[i] + EightTimes('0');
            std::memcpy(p + 8 * i, &text, sizeof text);
        }
    }

private:
    /// Each digit in a byte, the first one lowest.
    static std::uint64_t Eight(std::uint32_t value) {
        // Halves, quarters and eighths, side by side.
        const std::uint64_t halves = value / 10000 | std::uint64_t{value % 10000} << 32U;
        const std::uint64_t hundreds = (halves * 10486U >> 20U) & 0x0000007F0000007FU;
        const std::uint64_t quarters = hundreds | (halves - hundreds * 100) << 16U;
        const std::uint64_t tens = (quarters * 103U >> 10U) & 0x000F000F000F000FU;
        return tens | (quarters - tens * 10) << 8U;
    }

    std::array<std::uint64_t, 2> words_;
};

}  // namespace scalar

#if defined(__SSE2__)

namespace sse2 {

/// As scalar::NonDigitMask.
inline std::uint64_t NonDigitMask(const char* p) {
    std::uint64_t mask = 0;
    // Moved so that the digits become the ten lowest signed bytes.
    const __m128i offset = _mm_set1_epi8(static_cast<char>('0' + 128));
    const __m128i nine = _mm_set1_epi8(-128 + 9);
    for (unsigned int i = 0; i < 64; i += 16) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + i));
        const __m128i others = _mm_cmpgt_epi8(_mm_sub_epi8(bytes, offset), nine);
        mask |= std::uint64_t{static_cast<std::uint32_t>(_mm_movemask_epi8(others))} << i;
    }
    return mask;
}

/// As scalar::ByteMask.
inline std::uint64_t ByteMask(const char* p, char byte) {
    std::uint64_t mask = 0;
    const __m128i wanted = _mm_set1_epi8(byte);
    for (unsigned int i = 0; i < 64; i += 16) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + i));
        mask |= std::uint64_t{static_cast<std::uint32_t>(_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, wanted)))} << i;
    }
    return mask;
}

namespace detail {

/// How many of the bytes in four vectors, each of them 0 or -1, are -1.
inline unsigned int CountSet(__m128i a, __m128i b, __m128i c, __m128i d) {
    const __m128i sum = _mm_sub_epi8(_mm_setzero_si128(), _mm_add_epi8(_mm_add_epi8(a, b), _mm_add_epi8(c, d)));
    const __m128i halves = _mm_sad_epu8(sum, _mm_setzero_si128());
    return static_cast<unsigned int>(_mm_cvtsi128_si32(halves) + _mm_extract_epi16(halves, 4));
}

}  // namespace detail

/// As scalar::CountBytes.
inline unsigned int CountBytes(const char* p, char byte) {
    const __m128i wanted = _mm_set1_epi8(byte);
    const auto found = [&](unsigned int i) {
        return _mm_cmpeq_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p + i)), wanted);
    };
    return detail::CountSet(found(0), found(16), found(32), found(48));
}

/// As scalar::CountStarts.
inline unsigned int CountStarts(const char* p) {
    const auto blanks = [](const char* at) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
        return _mm_or_si128(_mm_cmpeq_epi8(_mm_min_epu8(bytes, _mm_set1_epi8(' ')), bytes),
                            _mm_cmpeq_epi8(bytes, _mm_set1_epi8(',')));
    };
    const auto starts = [&](unsigned int i) { return _mm_andnot_si128(blanks(p + i), blanks(p + i - 1)); };
    return detail::CountSet(starts(0), starts(16), starts(32), starts(48));
}

/// As scalar::FourNumbers.
inline std::uint64_t FourNumbers(const std::array<std::uint32_t, 4>& words,
                                 const std::array<std::uint32_t, 4>& digits) {
    const __m128i mask = _mm_loadu_si128(reinterpret_cast<const __m128i*>(digits.data()));
    const __m128i bytes = _mm_and_si128(_mm_set_epi32(static_cast<int>(words[3]), static_cast<int>(words[2]),
                                                      static_cast<int>(words[1]), static_cast<int>(words[0])),
                                        mask);
    const __m128i tens = _mm_mullo_epi16(bytes, _mm_set1_epi16(10));
    const __m128i pairs = _mm_and_si128(_mm_add_epi16(tens, _mm_srli_epi16(bytes, 8)), _mm_set1_epi16(0xFF));
    const __m128i values = _mm_madd_epi16(pairs, _mm_set1_epi32(1 << 16 | 100));
    std::uint64_t numbers;
    _mm_storel_epi64(reinterpret_cast<__m128i*>(&numbers), _mm_packs_epi32(values, values));
    return numbers;
}

/// As scalar::Extremes.
class Extremes {
public:
    void Add(std::uint64_t packed) {
        const __m128i numbers = _mm_set_epi64x(0, static_cast<long long>(packed));
        least_ = _mm_min_epi16(least_, numbers);
        greatest_ = _mm_max_epi16(greatest_, numbers);
    }

    std::array<std::int16_t, 4> Least() const { return Stored(least_); }
    std::array<std::int16_t, 4> Greatest() const { return Stored(greatest_); }

private:
    static std::array<std::int16_t, 4> Stored(__m128i numbers) {
        std::array<std::int16_t, 4> stored;
        _mm_storel_epi64(reinterpret_cast<__m128i*>(stored.data()), numbers);
        return stored;
    }

    __m128i least_ = _mm_set1_epi16(0x7FFF);
    __m128i greatest_ = _mm_set1_epi16(-0x8000);
};

/// As scalar::SixteenDigits.
class SixteenDigits {
public:
    SixteenDigits(std::uint32_t first, std::uint32_t second) {
        // Quotients as products with rounded-up reciprocals.
        const __m128i numbers = _mm_set_epi64x(second, first);
        const __m128i upper = _mm_srli_epi64(_mm_mul_epu32(numbers, _mm_set1_epi32(-0x2E48E8A7)), 45);
        const __m128i lower = _mm_sub_epi32(numbers, _mm_mul_epu32(upper, _mm_set1_epi32(10000)));
        const __m128i halves = _mm_or_si128(upper, _mm_slli_epi64(lower, 32));
        const __m128i hundreds = _mm_srli_epi16(_mm_mulhi_epu16(halves, _mm_set1_epi16(5243)), 3);
        const __m128i rests = _mm_sub_epi16(halves, _mm_mullo_epi16(hundreds, _mm_set1_epi16(100)));
        const __m128i quarters = _mm_or_si128(hundreds, _mm_slli_epi32(rests, 16));
        const __m128i tens = _mm_mulhi_epu16(quarters, _mm_set1_epi16(6554));
        const __m128i ones = _mm_sub_epi16(quarters, _mm_mullo_epi16(tens, _mm_set1_epi16(10)));
        const __m128i digits = _mm_or_si128(tens, _mm_slli_epi16(ones, 8));
        const int nonZero = _mm_movemask_epi8(_mm_cmpgt_epi8(digits, _mm_setzero_si128()));
        significant_ = static_cast<unsigned int>(std::bit_width(static_cast<unsigned int>(nonZero)));
        text_ = _mm_or_si128(digits, _mm_set1_epi8('0'));
    }

    unsigned int Significant() const { return significant_; }

    void StoreAt(char* p) const { _mm_storeu_si128(reinterpret_cast<__m128i*>(p), text_); }

private:
    __m128i text_;
    unsigned int significant_;
};

}  // namespace sse2

#endif

#if defined(__SSE2__)
namespace vectors = sse2;
#elif defined(__aarch64__)
namespace neon {
using namespace scalar;  // For what has no twin there.
}
namespace vectors = neon;
#else
namespace vectors = scalar;
#endif

#if defined(ORVALO_SCALAR)
namespace simd = scalar;
#else
namespace simd = vectors;
#endif

}  // namespace orvalo
