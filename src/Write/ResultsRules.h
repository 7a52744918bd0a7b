#pragma once

#include <cstdint>

#include "Common/StopFlag.h"
#include "Write/ResultsSource.h"

/// What both forms of results hold alike.
namespace orvalo {

/// How many rows are looked at or written between looks at the flag.
inline constexpr std::uint64_t rowPiece = 8192;

/// Refuses too many rows, and names that are not as many as the columns.
void CheckShape(const ResultsSource& results);
/// Refuses indices beyond 16 bits, and a box of coordinates that the reader does not take.
void CheckIndices(ResultsSource& results, StopFlag stop);

/// Calls `work(run)` for the rows of a column, in runs of at most `most` rows, and looks at the flag before each.
template <class Work>
void ForEachRun(NumberRun (ResultsSource::*numbers)(std::size_t, std::uint64_t), ResultsSource& results,
                std::size_t column, std::uint64_t most, StopFlag stop, const Work& work) {
    for (std::uint64_t row = 0; row < results.rows;) {
        stop.Check();
        NumberRun run = (results.*numbers)(column, row);
        run.rows = run.rows < most ? run.rows : most;
        work(run);
        row += run.rows;
    }
}

}  // namespace orvalo
