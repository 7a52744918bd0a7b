#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "Common/Platform.h"

namespace orvalo {

/// Where the rows of a kind stand in a text that has as many of them as it seems to have.
enum class RowLayout : std::uint8_t {
    /// One to a line, which the reader passes with its line feed.
    Lines,
    /// The same, but the line end is passed as far as it takes to end a decimal number: without a line feed after a
    /// carriage return.
    DecimalLines,
    /// One to a line, of which the reader leaves the line end.
    NaturalLines,
    /// Decimal numbers, each a row, in lines or not, that are passed with a blank or what ends a line.
    Numbers
};

/// A file that is being read through a buffer.
struct TextAhead {
    const platform::InputFile& file;
    /// What is in the buffer and was not read yet. As many bytes before and after it may be looked at as around the
    /// blocks of a RowText.
    const char* begin;
    const char* end;
    /// Where in the file it begins.
    std::uint64_t offset;
    /// How much is read at a time.
    std::size_t bufferSize;

    std::uint64_t EndOffset() const { return offset + static_cast<std::uint64_t>(end - begin); }
    /// How much of the file is not in the buffer; 0 where that cannot be said.
    std::uint64_t BytesAfter() const noexcept {
        const std::uint64_t size = file.Size().value_or(0);
        return size - std::min(size, EndOffset());
    }
};

/// Whether the text begins where the reader passes a row to.
bool BeginsAfterRow(const TextAhead& text, RowLayout layout);

/// A text that follows, cut into blocks that several threads can read: the rest of the buffer, then what would be read
/// into it at a time. The rows of a block are those which end in it, so that one that reaches into a part of the file
/// that cannot be read is left alone.
class RowText {
public:
    /// Bytes that may be looked at before and after a block.
    static constexpr std::size_t leadingSlack = 8;
    static constexpr std::size_t scanningSlack = 72;

    /// A block's text: [begin, end) are `rows` rows, if they are what they seem to be; up to `stop` it may be read.
    struct Block {
        const char* begin = nullptr;
        const char* end = nullptr;
        const char* stop = nullptr;
        std::uint64_t rows = 0;
    };

    /// Rows longer than `longestRow` may have the text end before them.
    RowText(const TextAhead& text, RowLayout layout, std::size_t longestRow, unsigned int team)
        : text_(text), layout_(layout), longestRow_(longestRow), members_(team) {}

    /// Gets a block for a member of the team. False where there is none, it cannot be read, or memory does not suffice.
    bool Fetch(unsigned int member, std::uint64_t block);
    const Block& Text(unsigned int member) const { return members_[member].block; }
    /// Where in the file a place in a member's block is.
    std::uint64_t Offset(unsigned int member, const char* place) const {
        return members_[member].offset + static_cast<std::uint64_t>(place - members_[member].origin);
    }

private:
    struct Member {
        Block block;
        std::unique_ptr<char[]> buffer;
        /// A place in its text, and where in the file that is.
        const char* origin = nullptr;
        std::uint64_t offset = 0;
    };

    const char* LastEnd(const char* begin, const char* end) const;
    std::uint64_t Count(const char* begin, const char* end) const;
    void Divide(Member& member, const char* begin, const char* middle, const char* end) const;

    const TextAhead text_;
    const RowLayout layout_;
    const std::size_t longestRow_;
    std::vector<Member> members_;
};

}  // namespace orvalo
