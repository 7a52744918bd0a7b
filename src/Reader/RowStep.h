#pragma once

#include <cstdint>

#include "Common/Bytes.h"
#include "Reader/LexerTable.h"

namespace orvalo {

/// What passing a bulk row adds to the place in the file, as Lexer::ReadNatural counts it: every blank and the first
/// digit of each number is a column, a line feed starts the columns anew.
struct RowStep {
    RowStep() = default;
    RowStep(std::uint64_t rowBytes, std::uint64_t lineFeeds, std::uint64_t lastColumns)
        : bytes(rowBytes), lines(lineFeeds), columns(lastColumns), columnMask(lineFeeds == 0 ? ~std::uint64_t{0} : 0) {}

    /// From the end of the row before to the end of the last number.
    std::uint64_t bytes = 0;
    std::uint64_t lines = 0;
    /// Since the last line feed of the row, or in all of it.
    std::uint64_t columns = 0;
    /// All bits where the columns add to those before the row, none where a line feed is between.
    std::uint64_t columnMask = 0;
};

/// Reads a row of `numbers` numbers at `p` byte by byte, whatever is between them, into `row`: 16 bits for each, the
/// first one lowest. Without a byte where that is not surely a row within its limits, all of it before `end`.
template <unsigned int numbers>
[[gnu::always_inline]] inline RowStep ReadRowByByte(const char* p, const char* end, std::uint64_t& row) {
    constexpr unsigned int largest = 32767;
    const char* const start = p;
    std::uint64_t lines = 0;
    std::uint64_t columns = 0;
    row = 0;
    for (unsigned int i = 0; i < numbers; ++i) {
        for (;; ++p) {
            ++columns;
            if (*p == '\n') {
                ++lines;
                columns = 0;
            } else if (*p != '\r' && lexer::classOf[static_cast<unsigned char>(*p)] != lexer::Blank) {
                break;
            }
        }
        if (!IsDigit(*p)) return {};
        unsigned int value = 0;
        for (; IsDigit(*p) && value <= largest; ++p) value = value * 10 + DigitValue(*p);
        if (value > largest || p >= end) return {};
        row |= std::uint64_t{value} << (16 * i);
    }
    return {static_cast<std::uint64_t>(p - start), lines, columns};
}

}  // namespace orvalo
