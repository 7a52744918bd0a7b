#include "Write/ResultsRules.h"

#include <algorithm>
#include <limits>

#include "Write/Refusal.h"

namespace orvalo {

namespace {

constexpr std::size_t coordinates = 3;
constexpr std::string_view axes[] = {"x", "y", "z", "f"};

std::string IndexName(std::size_t column) {
    return column < std::size(axes) ? std::string(axes[column]) : "of column " + std::to_string(column + 1);
}

/// Extends the range by the numbers of a run; returns the first row that 16 bits do not hold, or their count.
std::uint64_t Extend(const NumberRun& run, std::int64_t& least, std::int64_t& greatest) {
    using Limits = std::numeric_limits<std::int16_t>;
    for (std::uint64_t i = 0; i < run.rows; ++i) {
        const std::int64_t index = run.Index(i);
        if (index < Limits::min() || index > Limits::max()) return i;
        least = std::min(least, index);
        greatest = std::max(greatest, index);
    }
    return run.rows;
}

/// The same where all of them are as they are to be, in a loop of which the compiler takes many at once.
std::uint64_t ExtendBy16Bits(const NumberRun& run, std::int64_t& least, std::int64_t& greatest) {
    NumberRun adjacent = run;
    adjacent.stride = sizeof(std::int16_t);
    auto leastOfRun = std::numeric_limits<std::int16_t>::max();
    auto greatestOfRun = std::numeric_limits<std::int16_t>::min();
    for (std::uint64_t i = 0; i < run.rows; ++i) {
        const auto index = adjacent.At<std::int16_t>(i);
        leastOfRun = std::min(leastOfRun, index);
        greatestOfRun = std::max(greatestOfRun, index);
    }
    least = std::min<std::int64_t>(least, leastOfRun);
    greatest = std::max<std::int64_t>(greatest, greatestOfRun);
    return run.rows;
}

/// Refuses what does not fit, and gives the size of the column's range.
std::uint64_t CheckIndexColumn(ResultsSource& results, std::size_t column, StopFlag stop) {
    std::int64_t least = std::numeric_limits<std::int16_t>::max();
    std::int64_t greatest = std::numeric_limits<std::int16_t>::min();
    std::uint64_t row = 0;
    ForEachRun(&ResultsSource::Indices, results, column, rowPiece, stop, [&](const NumberRun& run) {
        const bool adjacent = run.size == sizeof(std::int16_t) && run.stride == sizeof(std::int16_t);
        const std::uint64_t fitting = adjacent ? ExtendBy16Bits(run, least, greatest) : Extend(run, least, greatest);
        if (fitting < run.rows) {
            Refuse("Row ", row + fitting + 1, ": the index ", IndexName(column), " is ", run.Index(fitting),
                   ", which 16 bits do not hold");
        }
        row += run.rows;
    });
    return least > greatest ? 0 : static_cast<std::uint64_t>(greatest - least) + 1;
}

/// Of a box, and of rows, which are numbered from 1.
constexpr std::uint64_t mostCells = std::numeric_limits<std::uint32_t>::max();

}  // namespace

void CheckShape(const ResultsSource& results) {
    if (results.rows >= mostCells) Refuse("The results have ", results.rows, " rows, which are too many");
    if (!results.valueNames.empty() && results.valueNames.size() != results.valueColumns) {
        Refuse("The results have ", results.valueNames.size(), " names for ", results.valueColumns, " value columns");
    }
    if (!results.indexNames.empty() && results.indexNames.size() != results.indexColumns) {
        Refuse("The results have ", results.indexNames.size(), " names for ", results.indexColumns, " index columns");
    }
}

void CheckIndices(ResultsSource& results, StopFlag stop) {
    if (results.wasRead) return;
    std::uint64_t cells = 1;
    for (std::size_t column = 0; column < results.indexColumns; ++column) {
        const std::uint64_t size = CheckIndexColumn(results, column, stop);
        if (column < coordinates) cells *= size;
    }
    if (cells > mostCells) Refuse("The box around all coordinates has ", cells, " cells, which are too many");
}

}  // namespace orvalo
