#pragma once

#include <cstdint>

/// Numbers of 128 bits.
namespace orvalo {

/// For processors whose compilers have none: what they are needed for.
class TwoWords {
public:
    constexpr TwoWords(std::uint64_t high, std::uint64_t low) : high_(high), low_(low) {}

    static constexpr TwoWords Product(std::uint64_t a, std::uint64_t b) {
        constexpr std::uint64_t half = 0xFFFFFFFFU;
        const std::uint64_t low = (a & half) * (b & half);
        const std::uint64_t middle = (a >> 32U) * (b & half) + (low >> 32U);
        const std::uint64_t other = (a & half) * (b >> 32U) + (middle & half);
        return {(a >> 32U) * (b >> 32U) + (middle >> 32U) + (other >> 32U), other << 32U | (low & half)};
    }

    constexpr TwoWords operator+(TwoWords other) const {
        const std::uint64_t low = low_ + other.low_;
        return {high_ + other.high_ + (low < low_ ? 1 : 0), low};
    }
    constexpr TwoWords operator-(TwoWords other) const {
        return {high_ - other.high_ - (low_ < other.low_ ? 1 : 0), low_ - other.low_};
    }
    constexpr TwoWords operator+(std::uint64_t other) const { return *this + TwoWords(0, other); }
    constexpr TwoWords operator-(std::uint64_t other) const { return *this - TwoWords(0, other); }
    /// By 1 to 64 bits.
    constexpr TwoWords operator>>(unsigned int bits) const {
        if (bits == 64) return {0, high_};
        return {high_ >> bits, high_ << (64U - bits) | low_ >> bits};
    }
    explicit constexpr operator std::uint64_t() const { return low_; }

private:
    std::uint64_t high_;
    std::uint64_t low_;
};

#if defined(__SIZEOF_INT128__)

__extension__ using Wide = unsigned __int128;

constexpr Wide Joined(std::uint64_t high, std::uint64_t low) {
    return static_cast<Wide>(high) << 64U | low;
}
constexpr Wide Product(std::uint64_t a, std::uint64_t b) {
    return static_cast<Wide>(a) * b;
}

#else

using Wide = TwoWords;

constexpr Wide Joined(std::uint64_t high, std::uint64_t low) {
    return {high, low};
}
constexpr Wide Product(std::uint64_t a, std::uint64_t b) {
    return Wide::Product(a, b);
}

#endif

}  // namespace orvalo
