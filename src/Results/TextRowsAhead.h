#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <vector>

#include "Common/OrderedBlocks.h"
#include "Common/Publish.h"
#include "Common/RowText.h"
#include "Common/StopFlag.h"
#include "Results/RowBlocks.h"
#include "Results/TextLines.h"
#include "Results/TextRow.h"

namespace orvalo {

/// How much of a text file was read, as progress counts it.
struct TextProgress {
    /// A file of unknown size, 0, counts as read with the first line.
    void Tell() const {
        if (percent == nullptr) return;
        Publish(percent, std::min(static_cast<float>(bytes) / fileSize * 100.0F, 100.0F));
    }

    float* percent;
    float fileSize;
    std::uint64_t bytes = 0;
};

/// Rows of text results that several threads read while the reader stands before them.
///
/// Each takes a block of lines, counts them, has the storage take what memory they need once those before are counted,
/// and reads them to where they belong, up to a line that is no row. With that one the reader goes on.
class TextRowsAhead {
public:
    /// What the rows are read into, `read` of which are there.
    struct Storage {
        RowBlocks<short>& indices;
        RowBlocks<double>& values;
        unsigned int indexColumns;
        unsigned int valueColumns;
    };

    TextRowsAhead(const Storage& storage, std::uint64_t read, TextLines& lines, std::size_t longestRow,
                  unsigned int team, TextProgress& progress, StopFlag stop);

    /// Returns how many rows there are then, after which `lines` go on.
    std::uint64_t Read();
    /// How many blocks were read whole.
    std::uint64_t Blocks() const { return blocks_; }

    // The steps of OrderedBlocks.

    struct Outcome {
        std::uint64_t read;
        bool whole;
        std::uint64_t offset;
        /// What the lines count for in the progress.
        std::uint64_t bytes;
    };

    bool Fetch(unsigned int member, std::uint64_t block) { return !stop_.IsSet() && text_.Fetch(member, block); }
    bool Begin(unsigned int member, std::uint64_t block);
    Outcome Work(unsigned int member, std::uint64_t block);
    bool End(const Outcome& outcome);

private:
    const Storage storage_;
    TextLines& lines_;
    const unsigned int team_;
    TextProgress& progress_;
    const StopFlag stop_;
    RowText text_;
    /// The first row of each member's block.
    std::vector<std::uint64_t> first_;
    /// How many rows there are with those of the blocks that were begun, and with those that were read.
    std::uint64_t begun_;
    std::uint64_t read_;
    std::uint64_t blocks_ = 0;
    std::uint64_t offset_ = 0;
};

}  // namespace orvalo
