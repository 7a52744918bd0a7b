#include "ColumnStatistics.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

namespace {

/// The finite entries of a column. Counts the others and finds the extremes.
std::vector<double> TakeFinite(const orvalo::Results& results, unsigned int column, ColumnStatistics& statistics) {
    std::vector<double> values;
    values.reserve(results.RowCount());
    for (unsigned int row = 0; row < results.RowCount(); ++row) {
        const double value = results.ValueGet(column, row);
        if (!std::isfinite(value)) {
            ++(std::isnan(value) ? statistics.notNumbers : statistics.infinite);
            continue;
        }
        if (values.empty() || value < statistics.least.value) statistics.least = {value, row};
        if (values.empty() || value > statistics.greatest.value) statistics.greatest = {value, row};
        values.push_back(value);
    }
    statistics.finite = values.size();
    return values;
}

// Squares of doubles may be beyond doubles, and sums lose digits.
using Wide = long double;

void FindMoments(const std::vector<double>& values, ColumnStatistics& statistics) {
    const auto count = static_cast<Wide>(values.size());
    Wide sum = 0;
    Wide squares = 0;
    for (const double value : values) {
        sum += value;
        squares += static_cast<Wide>(value) * value;
    }
    const Wide mean = sum / count;
    Wide deviations = 0;
    for (const double value : values) deviations += (value - mean) * (value - mean);
    statistics.mean = static_cast<double>(mean);
    statistics.rms = static_cast<double>(std::sqrt(squares / count));
    statistics.standardDeviation = static_cast<double>(std::sqrt(deviations / count));
}

std::vector<std::size_t> CountBins(const std::vector<double>& values, double least, double greatest, std::size_t bins) {
    std::vector<std::size_t> counts(bins);
    // Halved, as the whole range may be more than a double holds.
    const double half = greatest / 2 - least / 2;
    for (const double value : values) {
        const double part = half > 0 ? (value / 2 - least / 2) / half : 0.0;
        ++counts[std::min(static_cast<std::size_t>(part * static_cast<double>(bins)), bins - 1)];
    }
    return counts;
}

/// Reorders the values.
std::vector<double> FindPercentiles(std::vector<double>& values, const std::vector<double>& percents) {
    std::vector<double> found;
    auto from = values.begin();
    for (const double percent : percents) {
        const double place = percent / 100 * static_cast<double>(values.size() - 1);
        const auto below = values.begin() + static_cast<std::ptrdiff_t>(place);
        std::nth_element(from, below, values.end());
        from = below;
        const double part = place - std::floor(place);
        const double above = part > 0 ? *std::min_element(below + 1, values.end()) : *below;
        found.push_back(*below * (1 - part) + above * part);
    }
    return found;
}

}  // namespace

ColumnStatistics Describe(const orvalo::Results& results, unsigned int column, const std::vector<double>& percents,
                          std::size_t bins) {
    ColumnStatistics statistics;
    std::vector<double> values = TakeFinite(results, column, statistics);
    if (values.empty()) {
        constexpr double none = std::numeric_limits<double>::quiet_NaN();
        statistics.least.value = statistics.greatest.value = none;
        statistics.mean = statistics.rms = statistics.standardDeviation = none;
        statistics.percentiles.assign(percents.size(), none);
        statistics.histogram.assign(bins, 0);
        return statistics;
    }
    FindMoments(values, statistics);
    statistics.histogram = CountBins(values, statistics.least.value, statistics.greatest.value, bins);
    statistics.percentiles = FindPercentiles(values, percents);
    return statistics;
}
