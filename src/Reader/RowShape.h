#pragma once

#include <array>
#include <bit>
#include <cstdint>

#include "Reader/RowMasks.h"
#include "Reader/RowStep.h"

namespace orvalo {

/// What is before a regular row: nothing after a number that took its terminator. Unknown is never found.
enum class RowGap : std::uint8_t { Unknown, None, LineFeed, CarriageReturnLineFeed, Separator };

inline RowGap RowGapAt(const char* p, char separator) {
    if (*p == '\n') return RowGap::LineFeed;
    if (*p == separator) return RowGap::Separator;
    return *p == '\r' && p[1] == '\n' ? RowGap::CarriageReturnLineFeed : RowGap::None;
}

constexpr unsigned int Length(RowGap gap) {
    return gap == RowGap::None ? 0 : gap == RowGap::CarriageReturnLineFeed ? 2 : 1;
}

/// What a regular row of `numbers` numbers looks like: each has one to four digits, with one separator between two of
/// them. Places count from the start of the gap before the row.
template <unsigned int numbers>
struct RowShape {
    enum class Finding : std::uint8_t { Found, Irregular, BeyondWindow };

    Finding finding = Finding::Irregular;
    /// Unknown where no row was found, so that none fits; what follows is then of no use.
    RowGap gap = RowGap::Unknown;
    /// The bytes that are not digits, up to the one after the row.
    std::uint64_t nonDigits = 0;
    /// The bytes to compare them in: those of the row and the one after it, whatever that is.
    std::uint64_t extent = 0;
    /// The bytes of the row without its gap.
    std::uint64_t within = 0;
    /// Where each number ends.
    std::array<unsigned int, numbers> ends{};
    /// The bits of the four bytes up to the end of each number that are the values of its digits.
    std::array<std::uint32_t, 4> digits{};

    /// Whether the row at which `masks` begin has this shape, `rowGap` being before it.
    bool Fits(const RowMasks& masks, RowGap rowGap) const {
        return rowGap == gap && (((masks.nonDigits ^ nonDigits) & extent) | (masks.others & within)) == 0;
    }

    RowStep Step() const {
        const bool newLine = gap == RowGap::LineFeed || gap == RowGap::CarriageReturnLineFeed;
        // A blank and a first digit are counted for each number, nothing for the digits after it.
        return {ends[numbers - 1], newLine ? std::uint64_t{1} : 0, 2 * numbers - (gap == RowGap::Separator ? 0 : 1)};
    }
};

/// The shape of the row at which `masks` begin, `gap` being before it. BeyondWindow where the masks end before the row
/// and the byte after it do.
template <unsigned int numbers>
[[gnu::always_inline]] inline RowShape<numbers> FindRowShape(const RowMasks& masks, RowGap gap) {
    using Finding = typename RowShape<numbers>::Finding;
    RowShape<numbers> shape;
    std::uint64_t rest = masks.nonDigits & ~LowBits(Length(gap));
    unsigned int start = Length(gap);
    for (unsigned int i = 0; i < numbers; ++i) {
        if (rest == 0) {
            shape.finding = Finding::BeyondWindow;
            return shape;
        }
        const auto end = static_cast<unsigned int>(std::countr_zero(rest));
        rest &= rest - 1;
        if (end == start || end - start > 4) return shape;
        shape.ends[i] = end;
        shape.digits[i] = 0x0F0F0F0FU << (32U - 8U * (end - start));
        start = end + 1;
    }
    const unsigned int length = shape.ends[numbers - 1];
    shape.within = LowBits(length) & ~LowBits(Length(gap));
    if ((masks.others & shape.within) != 0) return shape;
    shape.finding = Finding::Found;
    shape.gap = gap;
    shape.extent = LowBits(length + 1);
    shape.nonDigits = masks.nonDigits & shape.extent;
    return shape;
}

}  // namespace orvalo
