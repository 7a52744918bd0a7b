#pragma once

#include <cstdint>

#include "Reader/Lexer.h"
#include "Reader/PlainNumber.h"
#include "Reader/ReportedPosition.h"
#include "Reader/RowStep.h"

namespace orvalo {

/// The lexer's place in its current file, copied out for a loop over bulk data: what such a loop stores cannot be in
/// the way of a local variable. Errors are not raised from here, so the place that they report is not kept.
class BulkCursor {
public:
    explicit BulkCursor(Lexer& source)
        : at(source.Current().cursor),
          end(source.Current().end),
          line(source.Current().line),
          column(source.Current().column),
          lexer_(source) {}

    /// Hands the place back to the lexer. To be called last.
    void Commit() const {
        LexerFile& file = lexer_.Current();
        file.cursor = at;
        file.line = line;
        file.column = column;
        file.uncountedLineFeeds += uncountedLineFeeds_;
        if (positionLine_ != 0) {
            lexer_.position = {file.index, static_cast<int>(positionLine_), static_cast<int>(positionColumn_)};
        }
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
    std::uint64_t line;
    std::uint64_t column;

private:
    Lexer& lexer_;
    std::uint64_t uncountedLineFeeds_ = 0;
    // Where the last number's scan moved the reported position to; no number was read while the line is 0.
    std::uint64_t positionLine_ = 0;
    std::uint64_t positionColumn_ = 0;
};

}  // namespace orvalo
