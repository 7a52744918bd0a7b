#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <unordered_set>
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

    /// The next token of the stream, across all included files.
    void NextToken(Token& token);

    /// Skips blanks and line ends and reads an unsigned decimal number that wraps at 32 bits. At anything else it stays
    /// there and returns false. Never leaves the current file.
    bool ReadNatural(std::uint32_t& value);

    /// The file whose bytes come next; for readers of plain bulk rows.
    LexerFile& Current() { return *current_; }

    /// The name, without its directory, of the file in which the last token began; empty when there is none.
    std::string CurrentFileName() const;

    /// The first byte of the last token or bulk number; without a path when no file was being read.
    InputPlace Place() const noexcept;

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
};

}  // namespace orvalo
