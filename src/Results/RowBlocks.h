#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "Common/Platform.h"

namespace orvalo {

/// Divides 32-bit numbers by one number of at least 2, with multiplications (Lemire, Kaser and Kurz 2019).
class FixedDivisor {
public:
    FixedDivisor() = default;
    explicit FixedDivisor(std::uint32_t divisor) : reciprocal_(~std::uint64_t{0} / divisor + 1) {}

    /// The upper half of the 128-bit product with the reciprocal.
    std::uint32_t Quotient(std::uint32_t number) const {
        const std::uint64_t low = (number * (reciprocal_ & 0xFFFFFFFFU)) >> 32U;
        return static_cast<std::uint32_t>((number * (reciprocal_ >> 32U) + low) >> 32U);
    }

private:
    std::uint64_t reciprocal_ = 0;
};

/// Rows of equal length in blocks of 1 MiB that never move. The system commits a block as it is filled.
template <class T>
class RowBlocks {
public:
    /// To be called once, before the first row. At least two rows must fit into a block.
    void SetColumns(std::size_t columns) {
        columns_ = columns;
        if (columns == 0) return;
        rowsPerBlock_ = static_cast<std::uint32_t>(blockBytes / (columns * sizeof(T)));
        rowsInLast_ = rowsPerBlock_;  // The first row opens a block as any other that finds none with room.
        rowWithoutBlock_.resize(columns);
        toBlock_ = FixedDivisor(rowsPerBlock_);
    }

    /// Where to write the next row. It counts once it is appended.
    T* NextRow() { return HasRoom() ? last_ + rowsInLast_ * columns_ : rowWithoutBlock_.data(); }

    /// False when memory or the number of blocks does not suffice. Without columns no block holds a row, so that every
    /// row takes one.
    bool AppendRow() {
        if (!HasRoom()) {
            if (!OpenBlock()) return false;
            std::copy(rowWithoutBlock_.begin(), rowWithoutBlock_.end(), last_);
        }
        if (columns_ > 0) ++rowsInLast_;
        return true;
    }

    const T& At(std::size_t column, std::uint32_t row) const {
        const std::uint32_t block = toBlock_.Quotient(row);
        return Block(block)[(row - block * rowsPerBlock_) * columns_ + column];
    }

    std::size_t BlockCount() const { return opened_; }
    const T* Block(std::size_t block) const { return reinterpret_cast<const T*>(blocks_[block].get()); }
    std::size_t RowsIn(std::size_t block) const { return block + 1 == opened_ ? rowsInLast_ : rowsPerBlock_; }

private:
    static constexpr std::size_t blockBytes = std::size_t{1} << 20U;
    static constexpr std::size_t mostBlocks = 4096;

    /// Once some blocks are full, more are taken at a time: large pages cost less to commit.
    static constexpr std::size_t mostAtOnce = 16;

    bool HasRoom() const { return rowsInLast_ < rowsPerBlock_; }

    bool OpenBlock() {
        if (opened_ == mostBlocks) return false;
        if (opened_ == blocks_.size() && !TakeBlocks()) return false;
        last_ = reinterpret_cast<T*>(blocks_[opened_].get());
        ++opened_;
        rowsInLast_ = 0;
        return true;
    }

    bool TakeBlocks() {
        const std::size_t count = std::clamp<std::size_t>(opened_, 1, mostAtOnce);
        const auto buffer = platform::AllocateToFill(count, columns_ == 0 ? 0 : blockBytes);
        if (!buffer) return false;
        for (std::size_t i = 0; i < count; ++i) blocks_.emplace_back(buffer, buffer.get() + i * blockBytes);
        return true;
    }

    std::size_t columns_ = 0;
    std::uint32_t rowsPerBlock_ = 0;
    std::uint32_t rowsInLast_ = 0;
    FixedDivisor toBlock_;
    T* last_ = nullptr;
    std::size_t opened_ = 0;
    std::vector<T> rowWithoutBlock_;
    // Those opened, and those taken beforehand. Blocks taken together share one buffer.
    std::vector<std::shared_ptr<unsigned char[]>> blocks_;
};

}  // namespace orvalo
