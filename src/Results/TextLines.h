#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "Common/Platform.h"
#include "Common/RowText.h"
#include "Common/StopFlag.h"

namespace orvalo {

/// A line of a text file, without its newline. `*end` may be read: it is no part of a number, and at least eight more
/// bytes may be read after it.
struct TextLine {
    const char* begin;
    const char* end;
    /// Whether a newline ends it. Without one it is the last of the file, or a piece of a line that is too long, or
    /// ends in a NUL.
    bool newline;

    /// Its length as C's string functions see it, with the newline.
    std::size_t Length() const { return static_cast<std::size_t>(end - begin) + (newline ? 1 : 0); }
};

/// Where a line, or the piece of a longer one, begins: see InputPlace.
struct TextPlace {
    std::uint64_t offset = 0;
    std::uint64_t line = 1;
    std::uint64_t column = 1;
};

/// Hands out a text file line by line, in place. It does as C's fgets with a buffer of 65,536 bytes on a stream that
/// drops a carriage return directly before a line feed: of a longer line every 65,535 characters are a line, and a
/// NUL hides the rest of its line.
class TextLines {
public:
    /// With its newline.
    static constexpr std::ptrdiff_t longestLine = 65535;

    /// Reads `readSize` bytes at a time, after the bytes of the file that the caller has `alreadyRead`: at most
    /// 65,535.
    TextLines(platform::InputFile& file, std::string_view alreadyRead, std::size_t readSize, StopFlag stop = {});

    /// False at the end of the file and after a read error. The line is valid until the next call. Throws Stopped.
    bool Next(TextLine& line);

    /// Where the line last handed out begins, and where the next one will.
    const TextPlace& Place() const { return place_; }
    const TextPlace& NextPlace() const { return nextPlace_; }

    /// What follows the line last handed out, which a newline has ended.
    TextAhead Ahead() const { return {file_, begin_, dataEnd_, nextPlace_.offset, readSize_}; }
    /// Goes on at a place after the line last handed out, as many lines farther on. Throws Stopped.
    void MoveTo(std::uint64_t offset, std::uint64_t lines);

    /// Whether Next has met a read error.
    bool Failed() const { return failed_; }

private:
    static constexpr std::size_t readableBehind = RowText::scanningSlack;

    bool HasWholeLine();
    bool Fill();
    void ReadOn();
    TextLine Take(char* end, char* next, bool newline);

    platform::InputFile& file_;
    const std::size_t readSize_;
    const StopFlag stop_;
    std::vector<char> buffer_;
    // Of the bytes read, [begin_, dataEnd_) are not handed out yet; in [begin_, searched_) there is no line feed, and
    // in [begin_, nul_) no NUL.
    char* begin_;
    char* searched_;
    char* nul_;
    char* dataEnd_;
    // The byte that a terminator replaces for as long as a piece of a line is handed out.
    char* replaced_ = nullptr;
    char replacedByte_ = 0;
    TextPlace place_;
    TextPlace nextPlace_;
    bool ended_ = false;
    bool failed_ = false;
};

}  // namespace orvalo
