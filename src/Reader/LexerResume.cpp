#include <algorithm>
#include <cstddef>
#include <string_view>

#include "Common/Bytes.h"
#include "Common/Raise.h"
#include "Reader/Lexer.h"
#include "Reader/LexerTable.h"

// How the lexer finds a place to go on after an error. None of this runs without one.

namespace orvalo {

namespace {

bool IsWordByte(char c) {
    const lexer::Class byteClass = lexer::classOf[static_cast<unsigned char>(c)];
    return byteClass == lexer::Letter || byteClass == lexer::Exponent || byteClass == lexer::Digit;
}

/// Numbers in a text without line ends: runs of what numbers consist of that begin as one.
std::size_t CountNumbers(std::string_view text) {
    std::size_t count = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool begins = IsDigit(text[i]) || text[i] == '.' || text[i] == '-' || text[i] == '+';
        if (!begins) continue;
        ++count;
        while (i < text.size() && (IsWordByte(text[i]) || text[i] == '.' || text[i] == '-' || text[i] == '+')) ++i;
    }
    return count;
}

/// Whether what a number failed at begins a token of its own, after a sign that lacks its number, or a comment.
bool BeginsAnew(std::string_view number) {
    const auto classAt = [number](std::size_t i) { return lexer::classOf[static_cast<unsigned char>(number[i])]; };
    if (number.size() < 2) return false;
    const lexer::Class last = classAt(number.size() - 1);
    const lexer::Class before = classAt(number.size() - 2);
    const bool afterSign = before == lexer::Blank || before == lexer::Sign;
    return last == lexer::CommentStart || (afterSign && (last == lexer::Quote || IsWordByte(number.back())));
}

}  // namespace

std::pair<int, FilePlace> Lexer::MarkedPlace() const noexcept {
    return {placeFile_, placeFile_ < 0 ? FilePlace() : File(placeFile_).Marked()};
}

std::string_view Lexer::RestOfLine() const noexcept {
    const LexerFile& file = *current_;
    const std::string_view rest(file.cursor, static_cast<std::size_t>(file.end - file.cursor));
    return file.LastByte() == '\n' ? std::string_view() : rest.substr(0, rest.find('\n'));
}

void Lexer::Recover(int code) {
    if (!current_) return;
    // The scan that would have counted it has ended.
    if (code == ReaderMessages::LexUnexpectedEOL.code && current_->LastByte() == '\n') ++current_->uncountedLineFeeds;
    if (current_->cursor == nullptr) {
        if (current_->parent >= 0) current_ = files_[static_cast<std::size_t>(current_->parent)];
    } else if (current_->HasFailed()) {
        current_->GiveUp();
    } else if (std::string_view("#/!").find(current_->LastByte()) != std::string_view::npos) {
        SkipLine();
    } else if (code == ReaderMessages::LexInvalidCharNumber.code && BeginsAnew(current_->TextSinceMark())) {
        current_->PutBack(static_cast<unsigned char>(current_->LastByte()));
    }
}

void Lexer::SkipLine() {
    LexerFile& file = *current_;
    if (file.LastByte() == '\n') return;
    for (;;) {
        const unsigned char byte = file.Get();
        if (byte == '\n') return file.PutBack(byte);
        if (byte == 0) return;
    }
}

void Lexer::SkipRow() {
    LexerFile& file = *current_;
    if (!naturalRead_ && file.LastByte() == '\n') return;
    const auto isEnd = [&file] {
        return (file.cursor[0] | 0x20) == 'n' && (file.cursor[1] | 0x20) == 'd' && !IsWordByte(file.cursor[2]);
    };
    for (char previous = file.LastByte();;) {
        const unsigned char byte = file.Get();
        if (byte == 0) return;
        const bool endsRow = (byte | 0x20) == 'e' && !IsWordByte(previous) && isEnd();
        if (byte == '\n' || endsRow) return file.PutBack(byte);
        previous = static_cast<char>(byte);
    }
}

bool Lexer::ReturnToNatural() {
    LexerFile& file = *current_;
    const std::string_view text = file.TextFromMark();
    if (placeFile_ != file.index || text.empty()) return false;
    const std::size_t digits = std::min(text.find_first_not_of("0123456789"), text.size());
    if (digits == 0 || (digits < text.size() && (text[digits] == '.' || IsWordByte(text[digits])))) return false;
    file.ReturnToMark();
    return true;
}

bool Lexer::IsFirstInLine() const {
    return current_->CurrentLine().find_first_not_of(" \t,") + 1 == current_->Marked().column;
}

std::size_t Lexer::NumbersInLine() const {
    return CountNumbers(current_->CurrentLine());
}

std::size_t Lexer::NumbersInNextLine() const {
    return CountNumbers(current_->NextLine());
}

}  // namespace orvalo
