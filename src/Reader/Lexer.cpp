#include "Reader/Lexer.h"

#include <algorithm>
#include <bit>
#include <string_view>

#include "Common/Bytes.h"
#include "Common/ParseNumber.h"
#include "Common/Raise.h"
#include "Reader/LexerTable.h"
#include "Reader/PlainNumber.h"
#include "Reader/ReportedPosition.h"

namespace orvalo {

namespace {

using lexer::classOf;

/// How a path is compared with those opened before.
std::string Folded(std::string path) {
    for (char& c : path) c = c == '\\' ? '/' : ToLower(c);
    return path;
}

bool MayBeginNumber(char byte) {
    const lexer::Class byteClass = classOf[static_cast<unsigned char>(byte)];
    return byteClass >= lexer::Digit && byteClass <= lexer::Sign;
}

/// How many bytes from `p` on neither end a comment nor move the reported position.
std::size_t CommentRun(const char* p) {
    const char* const start = p;
    for (;; p += 8) {
        const std::uint64_t below = BytesBelow(LoadEight(p), firstToHoldPosition);
        if (below != 0)
            return static_cast<std::size_t>(p - start) + static_cast<std::size_t>(std::countr_zero(below)) / 8;
    }
}

/// Takes the equals sign at the cursor, which has been counted. Of all tokens it has the fewest bytes to pay for what a
/// token costs, so the automaton is saved.
void TakeEquals(LexerFile& file, Token& token) {
    token.type = TokenType::Equals;
    token.plainText = {file.cursor++, 1};
}

[[noreturn]] void RaiseFailure(lexer::Failure failure) {
    switch (failure) {
        case lexer::Failure::InvalidChar:
            ORVALO_RAISE(Lexer, ReaderMessages::LexInvalidChar);
        case lexer::Failure::InvalidCharKeyword:
            ORVALO_RAISE(Lexer, ReaderMessages::LexInvalidCharKeyword);
        case lexer::Failure::InvalidCharNumber:
            ORVALO_RAISE(Lexer, ReaderMessages::LexInvalidCharNumber);
        case lexer::Failure::UnexpectedEOF:
            ORVALO_RAISE(Lexer, ReaderMessages::LexUnexpectedEOF);
        case lexer::Failure::UnexpectedEOL:
            break;
    }
    ORVALO_RAISE(Lexer, ReaderMessages::LexUnexpectedEOL);
}

/// One scan for a token: counts the bytes that it reads and moves the reported position. A line feed is counted when
/// the byte after it is read in the same scan, so one that ends a token is not.
class Scan {
public:
    Scan(LexerFile& file, Lexer::Position& position) : file_(file), position_(position) {}

    unsigned char Read() { return previous_ = file_.Get(); }

    /// Counts and reads each blank and line end at the cursor.
    void SkipBlanks() {
        for (;;) {
            const auto byte = static_cast<unsigned char>(*file_.cursor);
            if (classOf[byte] != lexer::Blank && classOf[byte] != lexer::LineEnd) return;
            Count();
            previous_ = byte;
            ++file_.cursor;
        }
    }

    /// Counts and reads each byte of a comment up to what may end it.
    void SkipComment() {
        for (;;) {
            if (!MovesPosition(previous_)) {
                const std::size_t left = static_cast<std::size_t>(file_.end - file_.cursor);
                const std::size_t run = std::min(CommentRun(file_.cursor), left);
                file_.cursor += run;
                file_.column += run;
            }
            const auto byte = static_cast<unsigned char>(*file_.cursor);
            if (classOf[byte] == lexer::Nul || classOf[byte] == lexer::LineEnd) return;
            Count();
            previous_ = byte;
            ++file_.cursor;
        }
    }

    /// Counts and reads the bytes that only lengthen the token.
    void TakeRun(lexer::State state, std::string& text) {
        const unsigned int longer = lexer::lengthening[state];
        if (longer == 0 || MovesPosition(previous_)) return;
        const char* const first = file_.cursor;
        const char* p = first;
        while ((longer >> classOf[static_cast<unsigned char>(*p)] & 1U) != 0) ++p;
        if (p == first) return;
        previous_ = static_cast<unsigned char>(p[-1]);
        file_.cursor = p;
        file_.column += static_cast<std::uint64_t>(p - first);
        const std::size_t kept = text.size();
        text.append(first, p);
        std::transform(text.begin() + static_cast<std::ptrdiff_t>(kept), text.end(),
                       text.begin() + static_cast<std::ptrdiff_t>(kept), ToLower);
    }

    /// Counts the byte that is read next.
    void Count() {
        if (CountByte(previous_, file_.line, file_.column)) position_ = PositionIn(file_);
    }

private:
    static Lexer::Position PositionIn(const LexerFile& file) {
        return {file.index, static_cast<int>(file.line), static_cast<int>(file.column)};
    }

    LexerFile& file_;
    Lexer::Position& position_;
    unsigned char previous_ = 0;
};

}  // namespace

bool Lexer::IsAbsolute(const std::string& path) {
    const std::string_view start = std::string_view(path).substr(0, 2);
    return start == "\\\\" || start == "//" || (start.size() == 2 && start[1] == ':');
}

std::string Lexer::Completed(const std::string& path) const {
    return path.size() > 1 && !IsAbsolute(path) ? baseDirectory + path : path;
}

void Lexer::OpenCompleted(const std::string& path) {
    // Files read to their end count too: a model includes a file once.
    if (!openedPaths_.insert(Folded(path)).second) ORVALO_RAISE(Lexer, ReaderMessages::RecursvieInclude);
    const int parent = current_ ? current_->index : -1;
    files_.push_back(std::make_shared<LexerFile>(parent, static_cast<int>(files_.size()), path, stopFlag));
    if (current_) files_.back()->includedAt = current_->Marked();
    current_ = files_.back();
    current_->Open(bufferSize_);
}

void Lexer::OpenAt(const std::string& path, const FilePlace& from) {
    CloseAll();
    files_.push_back(std::make_shared<LexerFile>(-1, 0, path, stopFlag));
    current_ = files_.back();
    current_->OpenAt(from, bufferSize_);
}

void Lexer::Mark(LexerFile& file, std::size_t back) {
    file.Mark(back);
    placeFile_ = file.index;
}

void Lexer::ReadRawToken(Token& token) {
    using namespace lexer;
    LexerFile& file = *current_;
    Scan scan(file, position);
    State state = Start;
    token.text.clear();
    token.plainText = {};
    naturalRead_ = false;
    for (;;) {
        if (state == Start) {
            scan.SkipBlanks();
            scan.Count();
            Mark(file, 0);
            if (*file.cursor == '=') return TakeEquals(file, token);
            if (MayBeginNumber(*file.cursor) && ReadPlainNumber(file, token)) return;
        } else {
            if (state == InComment) scan.SkipComment();
            scan.TakeRun(state, token.text);
            scan.Count();
        }
        const unsigned char byte = scan.Read();
        const Class byteClass = classOf[byte];
        const Action action = transitions[state][byteClass];
        if (IsKept(byteClass) && action.effect != Effect::EndPutBack) {
            token.text.push_back(ToLower(static_cast<char>(byte)));
        }
        switch (action.effect) {
            case Effect::Go:
                state = static_cast<State>(action.argument);
                continue;
            case Effect::Fail:
                RaiseFailure(static_cast<Failure>(action.argument));
            case Effect::EndPutBack:
                file.PutBack(byte);
                break;
            case Effect::End:
                file.uncountedLineFeeds += byte == '\n' ? 1 : 0;
                break;
        }
        token.type = static_cast<TokenType>(action.argument);
        if (token.type == TokenType::Number) token.value = DecimalValue(token.text);
        if (token.type == TokenType::EndOfFile) Mark(file, 0);
        return;
    }
}

bool Lexer::ReadPlainNumber(LexerFile& file, Token& token) {
    const char* const first = file.cursor;
    const char* const stop = ScanPlainNumber(first, file.end, token.value);
    if (stop == nullptr) return false;
    token.type = TokenType::Number;
    token.plainText = {first, static_cast<std::size_t>(stop - first)};
    file.column += static_cast<std::uint64_t>(stop - first);
    file.uncountedLineFeeds += *stop == '\n' ? 1 : 0;
    file.cursor = stop + 1;
    return true;
}

void Lexer::NextToken(Token& token) {
    for (;;) {
        ReadRawToken(token);
        if (token.type == TokenType::EndOfLine) continue;
        if (token.type == TokenType::EndOfFile && current_->parent >= 0) {
            current_->Close();
            current_ = files_[static_cast<std::size_t>(current_->parent)];
            continue;
        }
        if (token.type != TokenType::Keyword) return;
        stopFlag.Check();
        if (token.text != "include") return;
        ReadRawToken(token);
        if (token.type != TokenType::String) ORVALO_RAISE(Lexer, ReaderMessages::IncludeFNameMissing);
        Open(token.text);
    }
}

bool Lexer::ReadNatural(std::uint32_t& value) {
    LexerFile& file = *current_;
    naturalRead_ = true;
    // What cannot be read on is not there, wherever the number before it was marked.
    Mark(file, 0);
    for (;;) {
        const unsigned char byte = file.Get();
        ++file.column;
        if (byte == '\n') {
            ++file.line;
            file.column = 0;
            continue;
        }
        if (classOf[byte] == lexer::Blank || byte == '\r') continue;
        Mark(file, byte == 0 ? 0 : 1);
        if (classOf[byte] == lexer::Digit) {
            value = byte - unsigned{'0'};
            naturalWrapped_ = false;
            break;
        }
        file.PutBack(byte);
        return false;
    }
    for (;;) {
        const unsigned char byte = file.Get();
        if (classOf[byte] != lexer::Digit) {
            file.PutBack(byte);
            return true;
        }
        const std::uint64_t longer = std::uint64_t{value} * 10 + (byte - unsigned{'0'});
        naturalWrapped_ |= longer >> 32U != 0;
        value = static_cast<std::uint32_t>(longer);
    }
}

std::string Lexer::CurrentFileName() const {
    if (!current_ || position.fileIndex < 0) return {};
    const std::string& path = files_[static_cast<std::size_t>(position.fileIndex)]->path;
    std::size_t separator = path.rfind('\\');
    if (separator == std::string::npos) separator = path.rfind('/');
    return Quoted(separator == std::string::npos ? path : path.substr(separator + 1));
}

InputPlace Lexer::Place() const noexcept {
    if (placeFile_ < 0) return {};
    return files_[static_cast<std::size_t>(placeFile_)]->MarkedPlace();
}

void Lexer::ResetPosition() {
    position = {};
    placeFile_ = -1;
}

void Lexer::CloseAll() noexcept {
    current_.reset();
    files_.clear();
    openedPaths_.clear();
}

}  // namespace orvalo
