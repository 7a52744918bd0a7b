#pragma once

#include <cstddef>

namespace orvalo {

/// Successive rows of one column, as they lie in memory: the entry of row i of the run stands at data[i * stride].
/// They belong to the results that gave the run, and stay where they are as long as these live.
template <class Number>
struct ColumnRun {
    const Number* data;  ///< The entry of the first row.
    std::size_t stride;  ///< Entries from a row to the next one.
    std::size_t rows;    ///< How many rows follow one another so.
};

}  // namespace orvalo
