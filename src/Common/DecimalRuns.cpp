#include "Common/DecimalRuns.h"

#include <bit>
#include <cstddef>

#include "Common/Bytes.h"
#include "Common/FastDecimal.h"

#if defined(__x86_64__) && !defined(ORVALO_SCALAR)
#include <tmmintrin.h>
#elif defined(__aarch64__)
#include "Common/SimdNeon.h"
#endif

namespace orvalo {

DecimalShape::DecimalShape(const char* first, const char* stop) {
    if (first != stop && *first == '-') ++first;
    constexpr std::ptrdiff_t longest = 15;
    if (stop - first > longest) return;
    const auto size = static_cast<unsigned int>(stop - first);
    point = exponent = size;
    for (unsigned int i = 0; i < size; ++i) {
        if (IsDigit(first[i])) {
            digits |= 1U << i;
        } else if (first[i] == '.' && point == size) {
            point = i;
        } else if (ToLower(first[i]) == 'e' && i + 4 == size && point < i) {
            exponent = i++;
        } else {
            return;
        }
    }
    if (point == size || (exponent != size && (digits >> exponent) != 0b1100U)) return;
    fraction = static_cast<int>(exponent - point) - 1;
    order.fill(128);
    std::size_t place = order.size();
    for (unsigned int i = exponent; i-- > 0;) {
        if (i != point) order[--place] = static_cast<unsigned char>(i);
    }
    if (place < order.size()) length = size;
}

namespace {

/// Whether a number of that form stands at `p`, where `areDigits` says which of the bytes are digits, the lowest bit
/// for the first one. `exponent` becomes that of the power of ten by which the digits are to be multiplied.
[[maybe_unused]] inline bool HasShape(const DecimalShape& shape, const char* p, unsigned int areDigits, int& exponent) {
    // With the byte after the number, which is no digit.
    const unsigned int looked = (2U << shape.length) - 1;
    if ((areDigits & looked) != shape.digits) return false;
    if (p[shape.point] != '.' || static_cast<unsigned char>(p[shape.length]) > ' ') return false;

    exponent = -shape.fraction;
    if (shape.exponent != shape.length) {
        const char* const letter = p + shape.exponent;
        if (ToLower(letter[0]) != 'e' || (letter[1] != '-' && letter[1] != '+')) return false;
        const auto written = static_cast<int>(DigitValue(letter[2]) * 10 + DigitValue(letter[3]));
        exponent += letter[1] == '-' ? -written : written;
    }
    return exponent >= -22 && exponent <= 22;
}

/// As in FastDecimal: no more than 14 digits are an exact double, and so is the power of ten.
[[maybe_unused]] inline double Scaled(std::int64_t digits, int exponent, std::uint64_t negative) {
    const auto significand = static_cast<double>(digits);
    const double power = detail::exactPower[static_cast<std::size_t>(exponent < 0 ? -exponent : exponent)];
    const double factor = std::bit_cast<double>(std::bit_cast<std::uint64_t>(power) ^ negative << 63U);
    return exponent < 0 ? significand / factor : significand * factor;
}

}  // namespace

#if defined(__x86_64__) && !defined(ORVALO_SCALAR)

namespace {

/// The value of 16 digits, each a byte, of which the first is zero.
[[gnu::target("ssse3")]] std::int64_t Digits16(__m128i digits) {
    // Pairs to two places, then four, then eight.
    const __m128i pairs = _mm_maddubs_epi16(digits, _mm_set1_epi16(0x010A));
    const __m128i fours = _mm_madd_epi16(pairs, _mm_set1_epi32(0x00010064));
    const __m128i eights = _mm_madd_epi16(_mm_packs_epi32(fours, fours), _mm_set1_epi32(0x00012710));
    const auto both = static_cast<std::uint64_t>(_mm_cvtsi128_si64(eights));
    return static_cast<std::int64_t>((both & 0xFFFFFFFFU) * detail::digitScale[8] + (both >> 32U));
}

[[gnu::target("ssse3")]] std::size_t ReadRunOfShaped(const DecimalShape& shape, const char*& p, const char* end,
                                                     double* values, std::size_t count) {
    const DecimalShape own = shape;
    const __m128i order = _mm_loadu_si128(reinterpret_cast<const __m128i*>(own.order.data()));
    const char* at = p;
    for (std::size_t read = 0;; ++at) {
        const auto negative = static_cast<std::uint64_t>(*at == '-');
        at += negative;
        const __m128i digits = _mm_sub_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(at)), _mm_set1_epi8('0'));
        const __m128i areDigits = _mm_cmpeq_epi8(_mm_min_epu8(digits, _mm_set1_epi8(9)), digits);
        int exponent;
        if (!HasShape(own, at, static_cast<unsigned int>(_mm_movemask_epi8(areDigits)), exponent)) return read;
        values[read] = Scaled(Digits16(_mm_shuffle_epi8(digits, order)), exponent, negative);
        p = at += own.length;
        if (++read == count || at == end || *at != '\t') return read;
    }
}

}  // namespace

DecimalRuns::ReadRun DecimalRuns::Choose() {
    return __builtin_cpu_supports("ssse3") != 0 ? ReadRunOfShaped : nullptr;
}

#elif defined(__aarch64__) && !defined(ORVALO_SCALAR)

namespace {

/// The value of 16 digits, each a byte, of which the first is zero.
std::int64_t Digits16(uint8x16_t digits) {
    const uint8x8_t tens = vcreate_u8(0x010A010A010A010A);
    const uint16x8_t hundreds = vreinterpretq_u16_u32(vdupq_n_u32(0x00010064));
    const uint32x4_t tenThousands = vreinterpretq_u32_u64(vdupq_n_u64(0x0000000100002710));
    // Pairs to two places, then four, then eight.
    const uint16x8_t pairs = vpaddq_u16(vmull_u8(vget_low_u8(digits), tens), vmull_u8(vget_high_u8(digits), tens));
    const uint32x4_t fours = vpaddlq_u16(vmulq_u16(pairs, hundreds));
    const uint64x2_t eights = vpaddlq_u32(vmulq_u32(fours, tenThousands));
    return static_cast<std::int64_t>(vgetq_lane_u64(eights, 0) * detail::digitScale[8] + vgetq_lane_u64(eights, 1));
}

std::size_t ReadRunOfShaped(const DecimalShape& shape, const char*& p, const char* end, double* values,
                            std::size_t count) {
    const DecimalShape own = shape;
    const uint8x16_t order = vld1q_u8(own.order.data());
    const char* at = p;
    for (std::size_t read = 0;; ++at) {
        const auto negative = static_cast<std::uint64_t>(*at == '-');
        at += negative;
        const uint8x16_t digits = vsubq_u8(neon::detail::Load(at), vdupq_n_u8('0'));
        int exponent;
        if (!HasShape(own, at, neon::detail::Mask(vcleq_u8(digits, vdupq_n_u8(9))), exponent)) return read;
        values[read] = Scaled(Digits16(vqtbl1q_u8(digits, order)), exponent, negative);
        p = at += own.length;
        if (++read == count || at == end || *at != '\t') return read;
    }
}

}  // namespace

DecimalRuns::ReadRun DecimalRuns::Choose() {
    return ReadRunOfShaped;
}

#else

DecimalRuns::ReadRun DecimalRuns::Choose() {
    return nullptr;
}

#endif

}  // namespace orvalo
