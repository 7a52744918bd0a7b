#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include <Orvalo3DReader/Reader/InputPlace.h>

#include "Common/Platform.h"
#include "Common/RowText.h"
#include "Common/StopFlag.h"

namespace orvalo {

/// A place in a file that need not be named.
struct FilePlace {
    std::uint64_t offset = 0;
    std::uint64_t line = 1;
    std::uint64_t column = 1;

    bool operator==(const FilePlace& other) const { return offset == other.offset; }
};

/// One input file being read through a buffer.
///
/// It keeps two accounts of where it is. `line` and `column` are the ones that messages report; the lexer moves them
/// by rules of its own, under which a line feed that ends a token is not counted. The true place costs nothing while
/// reading goes well: an offset follows from the cursor, a line from `line` and the few line feeds that it left out,
/// and a column is looked up only when an error asks.
class LexerFile {
public:
    LexerFile(int parentFile, int ownIndex, std::string openedPath, StopFlag stop)
        : parent(parentFile), index(ownIndex), path(std::move(openedPath)), stop_(stop) {}

    /// Opens the file to be read `bufferSize` bytes at a time. Throws ErrorOpeningInputFile and OutOfMemory.
    void Open(std::size_t bufferSize);
    /// As Open, to be read from a place in it on. Throws ErrorReadingInputFile, too.
    void OpenAt(const FilePlace& from, std::size_t bufferSize);
    /// Releases the buffer and the stream; the record stays.
    void Close() noexcept;

    /// The next byte. At the end of the file 0, as often as it is asked; a NUL byte ends the file. Throws
    /// ErrorReadingInputFile and Stopped.
    unsigned char Get() {
        const auto byte = static_cast<unsigned char>(*cursor);
        if (byte == 0) return GetAtEnd();
        ++cursor;
        return byte;
    }

    /// Takes back the byte that Get returned last.
    void PutBack(unsigned char byte) { cursor -= byte == 0 ? 0 : 1; }

    /// Makes the byte at the cursor, or `back` bytes before it, the place that an error would report.
    void Mark(std::size_t back = 0) {
        markOffset_ = bufferOffset_ + static_cast<std::uint64_t>(cursor - Begin()) - back;
        markLine_ = line + uncountedLineFeeds;
        markColumn_ = 0;
    }

    FilePlace Marked() const noexcept {
        return {markOffset_, markLine_, markColumn_ != 0 ? markColumn_ : ColumnOf(markOffset_)};
    }

    /// The byte before the cursor, or what stood there in another buffer.
    char LastByte() const { return cursor[-1]; }
    /// What was read from the marked byte on, as far as it is still in the buffer.
    std::string_view TextFromMark() const noexcept;
    /// The part of it that ends before the cursor.
    std::string_view TextSinceMark() const noexcept;
    /// Goes back to the marked byte, which must be in the buffer.
    void ReturnToMark() noexcept;
    /// The line of the byte before the cursor, and the one after it, as far as they are in the buffer.
    std::string_view CurrentLine() const noexcept;
    std::string_view NextLine() const noexcept;
    /// What follows the cursor.
    TextAhead Ahead() const { return {stream_, cursor, end, Offset(), bufferSize_}; }
    /// Where the cursor's line starts.
    std::uint64_t LineStart() const { return Offset() - (ColumnOf(Offset()) - 1); }
    /// Moves the cursor on to a place after it, where `lineStart` is the start of the line, in the buffer in which the
    /// byte before it is reached by reading on. Throws ErrorReadingInputFile and Stopped.
    void MoveTo(std::uint64_t offset, std::uint64_t lineStart);
    /// Whether reading on has failed.
    bool HasFailed() const { return failed_; }
    /// Takes what was read for all of the file.
    void GiveUp() noexcept;

    /// The marked place. Leaves `path` empty where memory does not suffice for it.
    InputPlace MarkedPlace() const noexcept;

    int parent;
    int index;
    std::string path;
    /// Where the file that includes this one names it.
    FilePlace includedAt;
    std::uint64_t line = 0;
    std::uint64_t column = 0;
    /// Line feeds passed that `line` does not count.
    std::uint64_t uncountedLineFeeds = 0;

    /// The next byte to read. There is always one to look at: a NUL stands at `end`, and scanningSlack bytes more may
    /// be looked at after it.
    const char* cursor = nullptr;
    const char* end = nullptr;

    static constexpr std::size_t scanningSlack = RowText::scanningSlack;
    /// Bytes that may be looked at before the first one.
    static constexpr std::size_t leadingSlack = RowText::leadingSlack;

private:
    std::uint64_t Offset() const { return bufferOffset_ + static_cast<std::uint64_t>(cursor - Begin()); }
    char* Begin() const { return buffer_.get() + leadingSlack; }
    unsigned char GetAtEnd();
    bool Refill();
    void ReadBuffer();
    std::uint64_t ColumnOf(std::uint64_t offset) const noexcept;

    StopFlag stop_;
    platform::InputFile stream_;
    bool exhausted_ = false;
    bool failed_ = false;
    std::unique_ptr<char[]> buffer_;
    std::size_t bufferSize_ = 0;
    std::uint64_t bufferOffset_ = 0;
    // Where the line starts that reaches from earlier buffers into this one.
    std::uint64_t lineStart_ = 0;
    std::uint64_t markOffset_ = 0;
    std::uint64_t markLine_ = 1;
    std::uint64_t markColumn_ = 1;
};

}  // namespace orvalo
