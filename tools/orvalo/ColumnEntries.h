#pragma once

#include <algorithm>
#include <array>
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

/// The entries of a column from the first row to the last, in blocks.
template <class Number>
class ColumnEntries {
public:
    /// So few that a block of them stays in the nearest cache.
    static constexpr std::size_t blockRows = 1024;

    explicit ColumnEntries(std::vector<orvalo::ColumnRun<Number>> runs) : runs_(std::move(runs)) {}

    /// The entries of the next `count` rows, at most a block and no more than the column has left: there until the next
    /// call.
    const Number* Next(std::size_t count) {
        const orvalo::ColumnRun<Number>& current = runs_[run_];
        if (current.stride == 1 && current.rows - row_ >= count) return Take(count);
        for (std::size_t have = 0, part = 0; have < count; have += part) {
            const orvalo::ColumnRun<Number>& run = runs_[run_];
            part = std::min(count - have, run.rows - row_);
            const Number* const from = Take(part);
            for (std::size_t i = 0; i < part; ++i) block_[have + i] = from[i * run.stride];
        }
        return block_.data();
    }

private:
    const Number* Take(std::size_t count) {
        const orvalo::ColumnRun<Number>& run = runs_[run_];
        const Number* const from = run.data + row_ * run.stride;
        row_ += count;
        if (row_ == run.rows) {
            row_ = 0;
            ++run_;
        }
        return from;
    }

    std::vector<orvalo::ColumnRun<Number>> runs_;
    /// The run and its row that come next.
    std::size_t run_ = 0;
    std::size_t row_ = 0;
    std::array<Number, blockRows> block_;
};
