#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <vector>

#include <Orvalo3DReader/Results/ColumnRun.h>

#include "Common/Buffers.h"
#include "Common/PageCommitter.h"

namespace orvalo {

/// Rows of equal length in blocks of up to 1 MiB that never move. The system commits a block as it is filled.
template <class T>
class RowBlocks {
public:
    /// To be called once, before the first row. A row must fit into a MiB.
    void SetColumns(std::size_t columns) {
        columns_ = columns;
        const std::size_t rowsPerMiB = columns == 0 ? 1 : mebibyte / (columns * sizeof(T));
        rowLimit_ = maxMiB * rowsPerMiB;
        // Blocks hold a power of two of rows, so that a row is found without a division.
        shift_ = static_cast<unsigned int>(std::bit_width(rowsPerMiB)) - 1;
        rowInBlock_ = (std::uint32_t{1} << shift_) - 1;
        rowWithoutBlock_.resize(columns);
    }

    /// How many rows AppendRow takes.
    std::size_t RowLimit() const { return rowLimit_; }

    /// Where to write the next row. It counts once it is appended.
    T* NextRow() { return NeedsBlock() ? rowWithoutBlock_.data() : next_; }

    /// False when memory does not suffice, and for more rows than 4096 blocks of 1 MiB would hold, each with as many as
    /// fit whole. Without columns a row counts as a block, and takes no memory.
    bool AppendRow() {
        if (rows_ == rowLimit_) return false;
        if (NeedsBlock() && columns_ > 0) {
            if (!OpenBlock()) return false;
            std::copy(rowWithoutBlock_.begin(), rowWithoutBlock_.end(), next_);
        }
        next_ += columns_;
        ++rows_;
        return true;
    }

    /// Takes the blocks that rows up to `rows` will lie in, so that RowAt may be called for them while others are
    /// taken. False when memory does not suffice, and for more rows than AppendRow takes.
    bool Reserve(std::size_t rows) {
        if (rows > rowLimit_) return false;
        const std::size_t blocks = columns_ == 0 ? 0 : (rows + rowInBlock_) >> shift_;
        try {
            // So that the blocks taken before stay where they are while they are looked at.
            blocks_.reserve(std::size_t{2} * maxMiB + maxAtOnce);
            pages_.reserve(blocks_.capacity());
            while (blocks_.size() < blocks) {
                if (!TakeBlocks()) return false;
            }
        } catch (const std::bad_alloc&) {
            return false;
        }
        return true;
    }

    /// The place of a row for which Reserve was called, appended or not.
    T* RowAt(std::size_t row) {
        return columns_ == 0 ? nullptr : blocks_[row >> shift_] + (row & rowInBlock_) * columns_;
    }

    /// Commits memory for the rows from `first` to before `last`, for which Reserve was called and which are about to
    /// be written. Any thread may.
    void Commit(std::size_t first, std::size_t last) {
        if (columns_ == 0) return;
        for (; first < last; first = (first | rowInBlock_) + 1) {
            CommitBlock(first >> shift_,
                        std::min((first | rowInBlock_) + 1, last) - (first & ~std::size_t{rowInBlock_}));
        }
    }

    /// Makes the rows up to `rows` appended ones. They were written where RowAt said.
    void SetRows(std::size_t rows) {
        rows_ = rows;
        if (!NeedsBlock()) next_ = RowAt(rows);
    }

    const T& At(std::size_t column, std::uint32_t row) const {
        return blocks_[row >> shift_][std::size_t{row & rowInBlock_} * columns_ + column];
    }

    /// How many rows, that one included, lie one after the other in its block.
    std::uint32_t RowsOfBlockFrom(std::uint32_t row) const { return rowInBlock_ - (row & rowInBlock_) + 1; }
    /// How many rows a block holds; the last one may hold fewer.
    std::size_t RowsPerBlock() const { return std::size_t{rowInBlock_} + 1; }
    const T* Block(std::size_t block) const { return blocks_[block]; }

    /// Where the first `rows` rows of a column lie, in a run for each block.
    std::vector<ColumnRun<T>> Runs(std::size_t column, std::size_t rows) const {
        std::vector<ColumnRun<T>> runs;
        for (std::size_t row = 0; row < rows; row += RowsPerBlock()) {
            runs.push_back({Block(row >> shift_) + column, columns_, std::min(RowsPerBlock(), rows - row)});
        }
        return runs;
    }

private:
    static constexpr std::size_t mebibyte = std::size_t{1} << 20U;
    static constexpr std::size_t maxMiB = 4096;

    /// Once some blocks are full, more are taken at a time: large pages cost less to commit.
    static constexpr std::size_t maxAtOnce = 16;

    /// What commits the buffer of a block, and how much of it lies before the block.
    struct BlockPages {
        std::shared_ptr<PageCommitter> committer;
        std::size_t before;
    };

    bool NeedsBlock() const { return (rows_ & rowInBlock_) == 0; }

    bool OpenBlock() {
        const std::size_t block = rows_ >> shift_;
        if (block == blocks_.size() && !TakeBlocks()) return false;
        CommitBlock(block, RowsPerBlock());
        next_ = blocks_[block];
        return true;
    }

    /// Commits memory for the first rows of a block.
    void CommitBlock(std::size_t block, std::size_t rows) {
        const BlockPages& pages = pages_[block];
        pages.committer->Reach(pages.before + rows * columns_ * sizeof(T));
    }

    bool TakeBlocks() {
        const std::size_t count = std::clamp<std::size_t>(blocks_.size(), 1, maxAtOnce);
        const std::size_t entries = columns_ << shift_;
        buffers_.push_back(AllocateToFill(count, entries * sizeof(T)));
        if (!buffers_.back()) return false;
        auto* const first = reinterpret_cast<T*>(buffers_.back().get());
        const auto committer = std::make_shared<PageCommitter>(first, count * entries * sizeof(T));
        for (std::size_t i = 0; i < count; ++i) {
            pages_.push_back({committer, i * entries * sizeof(T)});
            blocks_.push_back(first + i * entries);
        }
        return true;
    }

    std::size_t columns_ = 0;
    std::size_t rows_ = 0;
    std::size_t rowLimit_ = 0;
    unsigned int shift_ = 0;
    /// The bits of a row's number that count within its block.
    std::uint32_t rowInBlock_ = 0;
    T* next_ = nullptr;
    std::vector<T> rowWithoutBlock_;
    // Those in use, and those taken beforehand: blocks taken together share one buffer.
    std::vector<T*> blocks_;
    /// Of each block.
    std::vector<BlockPages> pages_;
    std::vector<std::shared_ptr<unsigned char[]>> buffers_;
};

}  // namespace orvalo
