#pragma once

#include <cstddef>
#include <vector>

#include <Orvalo3DReader/Results/Results.h>

/// What a column of results is like. All but the counts is over the entries that are finite, and no number at all where
/// there is none.
struct ColumnStatistics {
    struct Extreme {
        double value = 0.0;
        /// The first row that has it.
        unsigned int row = 0;
    };

    std::size_t finite = 0;
    std::size_t notNumbers = 0;
    std::size_t infinite = 0;
    Extreme least;
    Extreme greatest;
    double mean = 0.0;
    /// Root of the mean square.
    double rms = 0.0;
    /// Of the whole population, so divided by the count.
    double standardDeviation = 0.0;
    /// As asked for, interpolated linearly between the entries next to them.
    std::vector<double> percentiles;
    /// How many entries lie in each of as many equal parts of the range as asked for; the last one includes its end.
    std::vector<std::size_t> histogram;
};

/// Takes the memory of a copy of the column. `percents` ascend.
ColumnStatistics Describe(const orvalo::Results& results, unsigned int column, const std::vector<double>& percents,
                          std::size_t bins);
