#pragma once

#include <cstdint>

#include "Common/Simd.h"

namespace orvalo {

/// The lowest `count` (0 to 63) bits.
constexpr std::uint64_t LowBits(std::uint64_t count) {
    return (std::uint64_t{1} << count) - 1;
}

/// What 64 bytes of bulk rows are, one bit for each, the lowest for the first.
struct RowMasks {
    static constexpr std::uint64_t size = 64;

    /// Bytes that are not digits.
    std::uint64_t nonDigits = 0;
    /// Bytes that are neither digits nor the separator.
    std::uint64_t others = 0;

    /// The same for the bytes from `start` (0 to 63) on.
    RowMasks From(std::uint64_t start) const { return {nonDigits >> start, others >> start}; }
};

/// Classifies the 64 bytes at `p`. Only the first `available` of them belong to the text: what is after them ends no
/// number.
inline RowMasks ClassifyRows(const char* p, std::uint64_t available, char separator) {
    const std::uint64_t nonDigits = simd::NonDigitMask(p);
    return {available < RowMasks::size ? nonDigits & LowBits(available) : nonDigits,
            nonDigits & ~simd::ByteMask(p, separator)};
}

}  // namespace orvalo
