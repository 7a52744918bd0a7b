#include <utility>

#include "Common/Raise.h"
#include "Reader/ReaderCore.h"
#include "Reader/Sections.h"

// Where reading goes on after an error. None of this runs without one.

namespace orvalo {

namespace {

bool IsUnreadable(int code) {
    return code == ReaderMessages::ErrorOpeningInputFile.code || code == ReaderMessages::ErrorReadingInputFile.code;
}

/// Whether the token that was being read when an error was raised is none.
bool LeavesNoToken(int code) {
    return IsUnreadable(code) ||
           (code >= ReaderMessages::LexInvalidChar.code && code <= ReaderMessages::RecursvieInclude.code);
}

struct Closing {
    std::string_view word;
};

}  // namespace

bool ReaderCore::Recovers(const Exception& failure) {
    if (recovery == nullptr || failure.code() == 0 || !recovery->Note(failure)) return false;
    // An include without a name takes no word that begins a section.
    const bool wordAfterInclude = failure.code() == ReaderMessages::IncludeFNameMissing.code && AtSection();
    if (LeavesNoToken(failure.code()) && !wordAfterInclude) {
        token.type = TokenType::None;
        token.text.clear();
        lexer.Recover(failure.code());
    }
    if (recovery->LineIsSpoilt()) lexer.SkipLine();
    return true;
}

bool ReaderCore::AtSection() const {
    return token.type == TokenType::EndOfFile ||
           (token.type == TokenType::Keyword && WordList(sections).Has(token.text));
}

bool ReaderCore::AtWord() const {
    return AtSection() || (token.type == TokenType::Keyword && sectionWords && sectionWords->Has(token.text));
}

bool ReaderCore::BeginsSection(std::string_view property) const {
    const auto place = WordList(sections).Find(property);
    return place && token.type == TokenType::Keyword && sections[*place].words().Has(token.text) && !AtWord();
}

void ReaderCore::HoldSection(std::string_view name) {
    heldText_ = std::move(token.text);
    token.text = name;
    held_ = 2;
}

void ReaderCore::TakeHeld() {
    if (--held_ > 0 || heldText_.empty()) return;
    token.text = std::move(heldText_);
    heldText_.clear();
}

bool ReaderCore::MeansEnd() {
    static constexpr Closing end[] = {{"end"}};
    if (token.type != TokenType::Keyword || !WordList(end).Nearest(token.text)) return false;
    token.text = end[0].word;
    return true;
}

void ReaderCore::NextReadableToken() {
    resuming = true;
    while (!Attempt([this] { NextToken(); })) {
    }
    resuming = false;
}

bool ReaderCore::ResumeAmong(const WordList& words, bool unknownKeyword) {
    const auto isWord = [&] { return token.type == TokenType::Keyword && words.Has(token.text); };
    // What failed once fails again.
    const bool again = lexer.MarkedPlace() == resumedAt_;
    resumedAt_ = lexer.MarkedPlace();
    if (token.type == TokenType::EndOfFile) {
        Hold();
        return false;
    }
    if (unknownKeyword) {
        const bool keyword = token.type == TokenType::Keyword;
        if (const auto meant = words.Nearest(token.text); meant && keyword && !AtSection()) {
            token.text = *meant;
            return true;
        }
        if (AtSection() || (keyword && WordList(sections).Nearest(token.text))) {
            Hold();
            return false;
        }
    } else if (isWord() && !again) {
        return true;
    }
    const auto maySection = [&] { return token.type == TokenType::Keyword && WordList(sections).Nearest(token.text); };
    do {
        NextReadableToken();
    } while (!isWord() && !AtSection() && !maySection());
    return true;
}

bool ReaderCore::IsOnNewLine() {
    const auto last = std::exchange(resumedAt_, lexer.MarkedPlace());
    return !last || last->first != resumedAt_->first || last->second.line != resumedAt_->second.line;
}

void ReaderCore::ResumeOnLaterLine(bool (*mayBegin)(std::string_view rest)) {
    const std::uint64_t line = lexer.MarkedPlace().second.line;
    const auto begins = [&] {
        return token.type == TokenType::Number && lexer.MarkedPlace().second.line != line &&
               mayBegin(lexer.RestOfLine());
    };
    while (!IsKeyword("end") && !AtSection() && !begins()) NextReadableToken();
    Hold();
}

void ReaderCore::SkipBlock() {
    while (!IsKeyword("end") && !AtSection()) NextReadableToken();
    if (AtSection()) Hold();
}

void ReaderCore::ResumeAtSection() {
    if (token.type == TokenType::Keyword) {
        if (const auto meant = WordList(sections).Nearest(token.text)) {
            token.text = *meant;
            return;
        }
    }
    // An END that closes nothing may stand on its own, or too early in a list, which then has another one. A section
    // that nobody knows may have properties that are called as sections are: it ends at an END before a section.
    if (IsKeyword("end")) {
        NextReadableToken();
        if (token.type == TokenType::Keyword || AtSection()) return;
        while (token.type != TokenType::Keyword && !AtSection()) NextReadableToken();
        if (IsKeyword("end")) NextReadableToken();
        return;
    }
    const bool unknownSection = token.type == TokenType::Keyword;
    for (bool mayBegin = !unknownSection;; mayBegin = !unknownSection || IsKeyword("end")) {
        NextReadableToken();
        if (token.type == TokenType::EndOfFile || (AtSection() && mayBegin)) return;
    }
}

}  // namespace orvalo
