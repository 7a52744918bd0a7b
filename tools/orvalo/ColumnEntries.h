#pragma once

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

#include <Orvalo3DReader/Results/ColumnRun.h>
#include <Orvalo3DReader/Results/Results.h>
#include <Orvalo3DReader/Results/ResultsMat.h>
#include <Orvalo3DReader/Results/ResultsTxt.h>

// Whole columns of results, of either format. A call into the library for each number would take longer than reading
// the file did.

inline std::vector<orvalo::ColumnRun<double>> ValueRuns(const orvalo::Results& results, unsigned int col) {
    const auto* text = dynamic_cast<const orvalo::ResultsTxt*>(&results);
    return text != nullptr ? text->ValueRuns(col) : dynamic_cast<const orvalo::ResultsMat&>(results).ValueRuns(col);
}

inline std::vector<orvalo::ColumnRun<short>> IndexRuns(const orvalo::Results& results, unsigned int col) {
    const auto* text = dynamic_cast<const orvalo::ResultsTxt*>(&results);
    return text != nullptr ? text->IndexRuns(col) : dynamic_cast<const orvalo::ResultsMat&>(results).IndexRuns(col);
}

/// The entries of a column from the first row to the last, fetched in blocks.
template <class Number>
class ColumnEntries {
public:
    explicit ColumnEntries(std::vector<orvalo::ColumnRun<Number>> runs) : runs_(std::move(runs)) {}

    /// Fetches the entries of the next `count` rows, which the column must have.
    void Fetch(Number* entries, std::size_t count) {
        for (std::size_t part = 0; count > 0; entries += part, count -= part) {
            const orvalo::ColumnRun<Number>& run = runs_[run_];
            part = std::min(count, run.rows - row_);
            const Number* const from = run.data + row_ * run.stride;
            if (run.stride == 1) {
                std::copy_n(from, part, entries);
            } else {
                for (std::size_t i = 0; i < part; ++i) entries[i] = from[i * run.stride];
            }
            row_ += part;
            if (row_ < run.rows) continue;
            row_ = 0;
            ++run_;
        }
    }

private:
    std::vector<orvalo::ColumnRun<Number>> runs_;
    /// The run and its row that come next.
    std::size_t run_ = 0;
    std::size_t row_ = 0;
};
