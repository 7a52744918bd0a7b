#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

#include "Common/StopFlag.h"
#include "Reader/LexerFile.h"
#include "Reader/Token.h"

namespace orvalo {

/// Turns input files into one stream of tokens, follows `include`, and reads bulk numbers straight from the buffer.
class Lexer {
public:
    /// Where a message says that it is: by the lexer's own count, not always the true place.
    struct Position {
        int fileIndex = -1;
        int line = 0;
        int column = 0;
    };

    static constexpr std::size_t defaultBufferSize = std::size_t{256} * 1024;

    explicit Lexer(std::size_t bufferSize = defaultBufferSize) : bufferSize_(bufferSize) {}

    /// Whether a path is taken as it stands; any other of two or more characters is prefixed with the base directory.
    static bool IsAbsolute(const std::string& path);
    std::string Completed(const std::string& path) const;

    /// Opens a file, its path completed, and makes it the current one. Throws RecursvieInclude for a file opened
    /// before, and what LexerFile::Open throws.
    void Open(const std::string& path) { OpenCompleted(Completed(path)); }
    void OpenCompleted(const std::string& path);
    /// Forgets every file and reads one from a place in it on.
    void OpenAt(const std::string& path, const FilePlace& from);

    /// The next token of the stream, across all included files.
    void NextToken(Token& token);

    /// Skips blanks and line ends and reads an unsigned decimal number that wraps at 32 bits. At anything else it stays
    /// there and returns false. Never leaves the current file.
    bool ReadNatural(std::uint32_t& value);
    /// Whether the number that ReadNatural gave last has wrapped.
    bool NaturalWrapped() const { return naturalWrapped_; }

    /// The file whose bytes come next; for readers of plain bulk rows.
    LexerFile& Current() { return *current_; }

    /// The name, without its directory, of the file in which the last token began; empty when there is none.
    std::string CurrentFileName() const;

    /// The first byte of the last token or bulk number; without a path when no file was being read.
    InputPlace Place() const noexcept;

    /// The file of that number, from 0 in the order in which files were opened. Closed ones stay listed.
    const LexerFile& File(int index) const { return *files_[static_cast<std::size_t>(index)]; }
    int FileCount() const { return static_cast<int>(files_.size()); }
    /// Place, with the number of its file; -1 when no file was being read.
    std::pair<int, FilePlace> MarkedPlace() const noexcept;
    /// What follows on the current line, as far as it was read.
    std::string_view RestOfLine() const noexcept;

    /// After an error of that code: makes the next token readable. A file that cannot be read is left, and so is the
    /// rest of a line after a byte that begins a comment in other formats.
    void Recover(int code);
    /// Leaves the rest of the current line; or of a row, which may end before an END on its line.
    void SkipLine();
    void SkipRow();
    /// Whether what was read last was a bulk number rather than a token.
    bool HasReadNatural() const { return naturalRead_; }
    /// Goes back to the first byte of the last token if it is a natural number that can still be reached.
    bool ReturnToNatural();
    /// Whether what was read last is the first on its line.
    bool IsFirstInLine() const;
    /// How many numbers stand in the current line, and in the next one, as far as they were read.
    std::size_t NumbersInLine() const;
    std::size_t NumbersInNextLine() const;

    /// Forgets position and place, for the start of a read.
    void ResetPosition();

    /// Closes and forgets every file.
    void CloseAll() noexcept;

    /// Ends with a separator; must be set before the first Open.
    std::string baseDirectory;
    /// Looked at where a file is read on, and at every keyword: sections, and the buffers that they take, begin with
    /// one.
    StopFlag stopFlag;
    Position position;

private:
    void ReadRawToken(Token& token);
    bool ReadPlainNumber(LexerFile& file, Token& token);
    void Mark(LexerFile& file, std::size_t back);

    std::size_t bufferSize_;
    // Shared, so that copies of a reader are copies of its members.
    std::shared_ptr<LexerFile> current_;
    std::vector<std::shared_ptr<LexerFile>> files_;
    std::unordered_set<std::string> openedPaths_;
    int placeFile_ = -1;
    bool naturalRead_ = false;
    bool naturalWrapped_ = false;
};

}  // namespace orvalo
