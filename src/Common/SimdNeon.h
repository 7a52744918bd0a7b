#pragma once

#include <array>
#include <cstdint>

#include <arm_neon.h>

/// The twins for 64-bit ARM processors, all of which have these instructions.
namespace orvalo::neon {

namespace detail {

/// The lowest bit of each of the 64 bytes in four vectors, each of which is 0 or 255.
inline std::uint64_t Mask(uint8x16_t a, uint8x16_t b, uint8x16_t c, uint8x16_t d) {
    const uint8x16_t places = {1, 2, 4, 8, 16, 32, 64, 128, 1, 2, 4, 8, 16, 32, 64, 128};
    // Sums of neighbours gather eight bits that are in different places in one byte.
    const uint8x16_t front = vpaddq_u8(vandq_u8(a, places), vandq_u8(b, places));
    const uint8x16_t back = vpaddq_u8(vandq_u8(c, places), vandq_u8(d, places));
    const uint8x16_t quarters = vpaddq_u8(front, back);
    return vgetq_lane_u64(vreinterpretq_u64_u8(vpaddq_u8(quarters, quarters)), 0);
}

/// As above, of 16 bytes.
inline std::uint32_t Mask(uint8x16_t a) {
    return static_cast<std::uint16_t>(Mask(a, a, a, a));
}

/// How many of the bytes in four vectors are 255.
inline unsigned int CountSet(uint8x16_t a, uint8x16_t b, uint8x16_t c, uint8x16_t d) {
    const uint8x16_t sum = vaddq_u8(vaddq_u8(a, b), vaddq_u8(c, d));
    return vaddvq_u8(vsubq_u8(vdupq_n_u8(0), sum));
}

inline uint8x16_t Load(const char* p) {
    return vld1q_u8(reinterpret_cast<const std::uint8_t*>(p));
}

}  // namespace detail

/// As scalar::NonDigitMask.
inline std::uint64_t NonDigitMask(const char* p) {
    const auto others = [](const char* at) {
        return vcgtq_u8(vsubq_u8(detail::Load(at), vdupq_n_u8('0')), vdupq_n_u8(9));
    };
    return detail::Mask(others(p), others(p + 16), others(p + 32), others(p + 48));
}

/// As scalar::ByteMask.
inline std::uint64_t ByteMask(const char* p, char byte) {
    const uint8x16_t wanted = vdupq_n_u8(static_cast<std::uint8_t>(byte));
    const auto found = [&](const char* at) { return vceqq_u8(detail::Load(at), wanted); };
    return detail::Mask(found(p), found(p + 16), found(p + 32), found(p + 48));
}

/// As scalar::CountBytes.
inline unsigned int CountBytes(const char* p, char byte) {
    const uint8x16_t wanted = vdupq_n_u8(static_cast<std::uint8_t>(byte));
    const auto found = [&](const char* at) { return vceqq_u8(detail::Load(at), wanted); };
    return detail::CountSet(found(p), found(p + 16), found(p + 32), found(p + 48));
}

/// As scalar::CountStarts.
inline unsigned int CountStarts(const char* p) {
    const auto blanks = [](const char* at) {
        const uint8x16_t bytes = detail::Load(at);
        return vorrq_u8(vcleq_u8(bytes, vdupq_n_u8(' ')), vceqq_u8(bytes, vdupq_n_u8(',')));
    };
    const auto starts = [&](const char* at) { return vbicq_u8(blanks(at - 1), blanks(at)); };
    return detail::CountSet(starts(p), starts(p + 16), starts(p + 32), starts(p + 48));
}

/// As scalar::FourNumbers.
inline std::uint64_t FourNumbers(const std::array<std::uint32_t, 4>& words,
                                 const std::array<std::uint32_t, 4>& digits) {
    const uint16x8_t hundreds = {100, 1, 100, 1, 100, 1, 100, 1};
    const uint16x8_t bytes = vreinterpretq_u16_u32(vandq_u32(vld1q_u32(words.data()), vld1q_u32(digits.data())));
    const uint16x8_t tens = vaddq_u16(vmulq_n_u16(bytes, 10), vshrq_n_u16(bytes, 8));
    const uint16x8_t pairs = vandq_u16(tens, vdupq_n_u16(0xFF));
    const uint32x4_t values = vpaddlq_u16(vmulq_u16(pairs, hundreds));
    return vget_lane_u64(vreinterpret_u64_u16(vmovn_u32(values)), 0);
}

/// As scalar::Extremes.
class Extremes {
public:
    void Add(std::uint64_t packed) {
        const int16x4_t numbers = vcreate_s16(packed);
        least_ = vmin_s16(least_, numbers);
        greatest_ = vmax_s16(greatest_, numbers);
    }

    std::array<std::int16_t, 4> Least() const { return Stored(least_); }
    std::array<std::int16_t, 4> Greatest() const { return Stored(greatest_); }

private:
    static std::array<std::int16_t, 4> Stored(int16x4_t numbers) {
        std::array<std::int16_t, 4> stored;
        vst1_s16(stored.data(), numbers);
        return stored;
    }

    int16x4_t least_ = vdup_n_s16(0x7FFF);
    int16x4_t greatest_ = vdup_n_s16(-0x8000);
};

}  // namespace orvalo::neon
