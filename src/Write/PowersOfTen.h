#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

/// The powers of ten that shortest decimals are computed with, made when the library is compiled.
namespace orvalo {

/// The leading 128 bits of a power of ten, the top bit set: cut off where it is an integer of so many bits, else
/// rounded up.
struct LeadingBits {
    std::uint64_t high = 0;
    std::uint64_t low = 0;
};

inline constexpr int leastPowerOfTen = -292;
inline constexpr int mostPowerOfTen = 324;

namespace detail {

/// A number of many bits; digits of 32 bits, the lowest first.
template <std::size_t n>
struct LongNumber {
    std::array<std::uint32_t, n> digits{};

    constexpr void MultiplyByFive() {
        std::uint64_t carry = 0;
        for (std::uint32_t& digit : digits) {
            carry += std::uint64_t{digit} * 5;
            digit = static_cast<std::uint32_t>(carry);
            carry >>= 32U;
        }
    }

    constexpr void DivideByFive() {
        std::uint64_t rest = 0;
        for (std::size_t i = n; i-- > 0;) {
            rest = rest << 32U | digits[i];
            digits[i] = static_cast<std::uint32_t>(rest / 5);
            rest %= 5;
        }
    }

    /// The leading 128 bits, and whether any bit after them is set.
    constexpr LeadingBits Leading(bool& more) const {
        std::size_t top = n - 1;
        while (digits[top] == 0) --top;
        unsigned int shift = 0;
        while ((digits[top] << shift >> 31U) == 0) ++shift;
        const auto word = [&](std::size_t back) {
            const std::uint64_t here = top >= back ? digits[top - back] : 0;
            const std::uint64_t next = top >= back + 1 ? digits[top - back - 1] : 0;
            return (here << 32U | next) << shift >> 32U & 0xFFFFFFFFU;
        };
        more = top >= 4 && (digits[top - 4] << shift) != 0;
        for (std::size_t back = 5; back <= top; ++back) more = more || digits[top - back] != 0;
        return {word(0) << 32U | word(1), word(2) << 32U | word(3)};
    }
};

constexpr auto MakePowersOfTen() {
    std::array<LeadingBits, mostPowerOfTen - leastPowerOfTen + 1> table{};
    const auto entry = [&table](int power) -> LeadingBits& {
        return table[static_cast<std::size_t>(power - leastPowerOfTen)];
    };
    const auto roundedUp = [](LeadingBits bits) {
        if (++bits.low == 0) ++bits.high;
        return bits;
    };
    bool more = false;
    // A power of ten has the bits of the power of five. 5^324 has 753 of them.
    LongNumber<24> up;
    up.digits[0] = 1;
    for (int power = 0; power <= mostPowerOfTen; ++power) {
        const LeadingBits bits = up.Leading(more);
        entry(power) = more ? roundedUp(bits) : bits;
        up.MultiplyByFive();
    }
    // 2^928 / 5^292 has 250 bits left. Cut off at each division, it is what cutting off once would give.
    LongNumber<30> down;
    down.digits[29] = 1;
    for (int power = -1; power >= leastPowerOfTen; --power) {
        down.DivideByFive();
        entry(power) = roundedUp(down.Leading(more));
    }
    return table;
}

}  // namespace detail

inline constexpr auto powersOfTen = detail::MakePowersOfTen();

}  // namespace orvalo
