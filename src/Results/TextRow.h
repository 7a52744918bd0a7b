#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "Common/Bytes.h"
#include "Common/DecimalRuns.h"
#include "Common/ParseNumber.h"
#include "Results/TextLines.h"

/// The grammar of text results: what the first line names, and how a line is a row of numbers.
namespace orvalo {

inline constexpr std::array<std::string_view, 4> indexNames = {"x", "y", "z", "f"};

struct TextColumns {
    /// In order: the names of the index columns, if there are any, then those of the value columns.
    std::vector<std::string> names;
    unsigned int indices = 0;
    unsigned int values = 0;
};

/// The columns that a first line names.
TextColumns NamedColumns(std::string_view line);

/// How the reading of a row ended.
enum class RowEnd : std::uint8_t {
    Whole,
    /// The line ends, without a newline, where only a value may be the last.
    Unended,
    TooMany,
    TooFew
};

struct TextRow {
    RowEnd end;
    /// The columns that were taken up.
    unsigned int columns;
};

/// Reads a run of digits, none included, as a 16-bit number that wraps.
inline const char* ReadIndex(const char* p, short& index) {
    unsigned int value = 0;
    for (; IsDigit(*p); ++p) value = value * 10 + static_cast<unsigned int>(*p - '0');
    index = static_cast<short>(static_cast<std::uint16_t>(value));
    return p;
}

inline const char* SkipTabs(const char* p) {
    while (*p == '\t') ++p;
    return p;
}

/// Reads the values of a line from `p` on into the places from `value` to `valueEnd`, which becomes the one after the
/// last value read. Stops before the end of the line when all places are taken, and where there is no number: no later
/// column gets on there either.
inline const char* ReadValues(const char* p, const char* end, double* value, const double*& valueEnd,
                              DecimalRuns& runs) {
    const char* start;
    do {
        start = p;
        const std::size_t read = runs.Read(p, end, value, static_cast<std::size_t>(valueEnd - value));
        value += read;
        if (read == 0) {
            p = ParseNumber(p, end, *value++);
            runs.Learn(start, p);
        }
        p = SkipTabs(p);
    } while (p != end && p != start && value != valueEnd);
    valueEnd = value;
    return p;
}

/// Reads a line into as many indices and values as there are columns of them. `runs` is kept from line to line.
inline TextRow ReadTextRow(const TextLine& line, short* index, unsigned int indices, double* values,
                           unsigned int valueCount, DecimalRuns& runs) {
    const char* p = line.begin;
    unsigned int count = 0;
    // A token that is no number takes up a column and no character, so that the next column begins at the same place.
    // A newline on its own is such a token.
    bool more = line.Length() > 0;
    for (; more && count < indices; ++count) {
        p = ReadIndex(p, *index++);
        if (p == line.end && !line.newline) return {RowEnd::Unended, count};
        p = SkipTabs(p);
        more = p != line.end;
    }
    if (more) {
        const double* valueEnd = values + valueCount;
        p = ReadValues(p, line.end, values, valueEnd, runs);
        count += static_cast<unsigned int>(valueEnd - values);
        if (p != line.end) return {RowEnd::TooMany, count};
    }
    return {count < indices + valueCount ? RowEnd::TooFew : RowEnd::Whole, count};
}

}  // namespace orvalo
