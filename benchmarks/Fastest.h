#pragma once

#include <algorithm>
#include <vector>

/// The fastest of all repetitions, as a statistic: what the code takes where nobody else is using the machine.
inline double Fastest(const std::vector<double>& times) {
    return *std::min_element(times.begin(), times.end());
}
