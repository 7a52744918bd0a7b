#pragma once

#include <cstdint>

#include "Reader/Lexer.h"
#include "Reader/PlainNumber.h"
#include "Reader/ReportedPosition.h"
#include "Reader/RowStep.h"

namespace orvalo {

/// A line and a column as they are counted.
struct CountedPlace {
    std::uint64_t line = 0;
    std::uint64_t column = 0;

    /// Where this place is for one who counts from the start of the text before, which ends at `start` and at which
    /// this one's count began with line 1, column 0.
    CountedPlace After(const CountedPlace& start) const {
        return {start.line + line - 1, line == 1 ? start.column + column : column};
    }
};

/// What passing a text adds to the lexer's account of the place.
struct CountedText {
    /// The end of the text; the start is line 1, column 0.
    CountedPlace end{1, 0};
    /// Where the last number's scan moved the reported position to; line 0 where no number was read.
    CountedPlace position;
    std::uint64_t uncountedLineFeeds = 0;

    /// Adds a text that follows this one.
    void Append(const CountedText& next) {
        if (next.position.line != 0) position = next.position.After(end);
        end = next.end.After(end);
        uncountedLineFeeds += next.uncountedLineFeeds;
    }

    /// Moves what the lexer keeps for its current file, without its cursor, past the text.
    void CountIn(Lexer& lexer) const {
        LexerFile& file = lexer.Current();
        const CountedPlace start{file.line, file.column};
        const CountedPlace after = end.After(start);
        file.line = after.line;
        file.column = after.column;
        file.uncountedLineFeeds += uncountedLineFeeds;
        if (position.line == 0) return;
        const CountedPlace moved = position.After(start);
        lexer.position = {file.index, static_cast<int>(moved.line), static_cast<int>(moved.column)};
    }
};

/// A place in a text of bulk data and the lexer's account of it, kept apart from the lexer for a loop: what such a loop
/// stores cannot be in the way of a local variable. Errors are not raised from here, so the place that they report is
/// not kept.
class BulkCursor {
public:
    /// Text from `begin` on that ends at `stop`: as much may be looked at before and after it as in a LexerFile.
    BulkCursor(const char* begin, const char* stop) : at(begin), end(stop) {}
    /// What is in the buffer of the lexer's current file.
    explicit BulkCursor(Lexer& lexer) : BulkCursor(lexer.Current().cursor, lexer.Current().end) {}

    /// What was passed.
    CountedText Counted() const { return {{line, column}, {positionLine_, positionColumn_}, uncountedLineFeeds_}; }

    /// Moves the lexer, whose text this is, past what was passed. To be called last.
    void Commit(Lexer& lexer) const {
        lexer.Current().cursor = at;
        Counted().CountIn(lexer);
    }

    /// Passes over a row.
    void Pass(const RowStep& step) {
        at += step.bytes;
        line += step.lines;
        column = (column & step.columnMask) + step.columns;
    }

    /// Reads the next token if it is a number of the common kind, counting as Lexer::NextToken does; otherwise changes
    /// nothing and returns false.
    bool TakeNumber(double& value) {
        const char* p = at;
        std::uint64_t newLine = line;
        std::uint64_t newColumn = column;
        std::uint64_t newPositionLine = 0;
        std::uint64_t newPositionColumn = 0;
        for (unsigned char previous = 0;; previous = static_cast<unsigned char>(*p++)) {
            if (CountByte(previous, newLine, newColumn)) {
                newPositionLine = newLine;
                newPositionColumn = newColumn;
            }
            const lexer::Class byteClass = lexer::classOf[static_cast<unsigned char>(*p)];
            if (byteClass != lexer::Blank && byteClass != lexer::LineEnd) break;
        }
        const char* const stop = ScanPlainNumber(p, end, value);
        if (stop == nullptr) return false;
        at = stop + 1;
        line = newLine;
        column = newColumn + static_cast<std::uint64_t>(stop - p);
        positionLine_ = newPositionLine;
        positionColumn_ = newPositionColumn;
        uncountedLineFeeds_ += *stop == '\n' ? 1 : 0;
        return true;
    }

    const char* at;
    const char* end;
    std::uint64_t line = 1;
    std::uint64_t column = 0;

private:
    std::uint64_t uncountedLineFeeds_ = 0;
    std::uint64_t positionLine_ = 0;
    std::uint64_t positionColumn_ = 0;
};

}  // namespace orvalo
