#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <vector>

#include "Common/OrderedBlocks.h"
#include "Common/Publish.h"
#include "Common/RowText.h"
#include "Reader/BulkCursor.h"
#include "Reader/ReaderCore.h"

namespace orvalo {

/// Bulk rows that several threads read while the lexer stands before them.
///
/// Each takes a block of the text, counts its rows, and, once those before it are counted, reads them to where they
/// belong with the code that one thread reads plain rows with. It stops at what is not surely a plain row. The lexer
/// then goes on after the last row before which all were read; what was read of later ones is cleared.
///
/// `Rows` are those of a section:
///   static constexpr RowLayout layout;
///   struct Kept: what is gathered from rows besides
///   std::uint64_t Read(BulkCursor&, std::uint64_t first, std::uint64_t last, Kept&) const: reads plain rows, numbered
///       from `first` to before `last`; returns the one after the last of them, after which the cursor stands
///   void Keep(const Kept&): called in the order of the rows
///   void Clear(std::uint64_t first, std::uint64_t last) const: has rows be what they are before they are read
template <class Rows>
class RowsAhead {
public:
    /// The rows from `read` to before `limit`. Their number so far goes to `progress`.
    RowsAhead(ReaderCore& core, Rows& rows, std::uint64_t read, std::uint64_t limit, unsigned long long* progress)
        : core_(core),
          rows_(rows),
          limit_(limit),
          progress_(progress),
          text_(core.lexer.Current().Ahead(), Rows::layout, longestRow, core.ahead.threads),
          members_(core.ahead.threads),
          begun_(read),
          read_(read) {}

    /// Returns the row after the last one read.
    std::uint64_t Read() {
        LexerFile& file = core_.lexer.Current();
        offset_ = file.Ahead().offset;
        lineStart_ = file.LineStart();
        const std::uint64_t first = read_;
        OrderedBlocks<RowsAhead>(*this, core_.ahead.threads).Run();
        if (begun_ > read_) rows_.Clear(read_, begun_);
        if (read_ > first) {
            counted_.CountIn(core_.lexer);
            file.MoveTo(offset_, lineStart_);
        }
        return read_;
    }

    /// How many blocks were read whole.
    std::uint64_t Blocks() const { return blocks_; }

    // The steps of OrderedBlocks.

    struct Outcome {
        std::uint64_t read;
        bool whole;
        std::uint64_t offset;
        /// Of the last line that starts in what was read.
        std::optional<std::uint64_t> lineStart;
        CountedText counted;
        typename Rows::Kept kept;
    };

    bool Fetch(unsigned int member, std::uint64_t block) {
        return !core_.lexer.stopFlag.IsSet() && text_.Fetch(member, block);
    }

    bool Begin(unsigned int member, std::uint64_t) {
        if (begun_ == limit_) return false;
        members_[member].first = begun_;
        begun_ += std::min(text_.Text(member).rows, limit_ - begun_);
        members_[member].last = begun_;
        return true;
    }

    Outcome Work(unsigned int member, std::uint64_t) {
        const RowText::Block& block = text_.Text(member);
        const Span span = members_[member];
        BulkCursor cursor(block.begin, block.stop);
        Outcome outcome{};
        outcome.read = rows_.Read(cursor, span.first, span.last, outcome.kept);
        outcome.whole = outcome.read == span.first + block.rows && cursor.at == block.end;
        outcome.offset = text_.Offset(member, cursor.at);
        outcome.counted = cursor.Counted();
        for (const char* p = cursor.at; p-- != block.begin;) {
            if (*p != '\n') continue;
            outcome.lineStart = text_.Offset(member, p + 1);
            break;
        }
        return outcome;
    }

    bool End(const Outcome& outcome) {
        // As one thread does, tells nothing before a first row: the count of a grid before this one stands until then.
        if (outcome.read > read_) Publish(progress_, outcome.read);
        read_ = outcome.read;
        rows_.Keep(outcome.kept);
        counted_.Append(outcome.counted);
        offset_ = outcome.offset;
        if (outcome.lineStart) lineStart_ = *outcome.lineStart;
        if (outcome.whole) ++blocks_;
        return outcome.whole;
    }

private:
    /// Whoever writes longer rows is read by one thread.
    static constexpr std::size_t longestRow = 512;

    /// The rows of a member's block.
    struct Span {
        std::uint64_t first = 0;
        std::uint64_t last = 0;
    };

    ReaderCore& core_;
    Rows& rows_;
    const std::uint64_t limit_;
    unsigned long long* progress_;
    RowText text_;
    std::vector<Span> members_;
    /// The row after those of the blocks that were begun, and after those that were read.
    std::uint64_t begun_;
    std::uint64_t read_;
    std::uint64_t blocks_ = 0;
    // How the lexer's account of the place changes.
    CountedText counted_;
    std::uint64_t offset_ = 0;
    std::uint64_t lineStart_ = 0;
};

/// Reads rows with several threads, as far as that goes and is likely to be worth it. Returns the row after the last
/// one that was read.
template <class Rows>
std::uint64_t ReadRowsAhead(ReaderCore& core, Rows rows, std::uint64_t read, std::uint64_t limit,
                            unsigned long long* progress) {
    if (core.ahead.threads < 2) return read;
    if (!core.ahead.MayPay(core.lexer.Current().Ahead(), Rows::layout, limit - read)) return read;
    RowsAhead<Rows> ahead(core, rows, read, limit, progress);
    const std::uint64_t after = ahead.Read();
    core.ahead.Note(core.lexer.Current().Ahead(), ahead.Blocks());
    core.lexer.stopFlag.Check();
    return after;
}

}  // namespace orvalo
