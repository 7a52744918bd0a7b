#include "Check/SourceTokens.h"

#include <algorithm>

namespace orvalo {

namespace {

constexpr std::size_t chunkSize = 65536;
constexpr std::size_t longestToken = 512;

bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == ',' || c == '\n' || c == '\r';
}
bool BeginsComment(char c) {
    return c == ';' || c == '%' || c == '$';
}
char ToLower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

}  // namespace

char SourceTokens::Peek() {
    if (at_ == chunk_.size()) {
        chunk_ = source_.From(next_, chunkSize).substr(0, chunkSize);
        at_ = 0;
        if (chunk_.empty()) return '\0';
    }
    return chunk_[at_];
}

void SourceTokens::Take() {
    const bool lineFeed = chunk_[at_++] == '\n';
    ++next_.offset;
    next_.line += lineFeed ? 1 : 0;
    next_.column = lineFeed ? 1 : next_.column + 1;
}

bool SourceTokens::Next() {
    text.clear();
    for (bool comment = false;; Take()) {
        const char c = Peek();
        if (c == '\0') return false;
        comment = c != '\n' && (comment || BeginsComment(c));
        if (!comment && !IsBlank(c)) break;
    }
    begin_.offset = next_.offset;
    begin_.line = next_.line;
    begin_.column = next_.column;
    const bool name = Peek() == '"';
    do {
        if (text.size() < longestToken) text += ToLower(Peek());
        Take();
        const char c = Peek();
        if (c == '\0' || c == '\n') return true;
        if (name && text.size() > 1 && text.back() == '"') return true;
        if (!name && (IsBlank(c) || BeginsComment(c) || c == '=' || c == '"' || text == "=")) return true;
    } while (true);
}

bool SourceTokens::IsNumber() const {
    const std::size_t digit = text.find_first_not_of("+-.");
    return digit <= 2 && text[digit] >= '0' && text[digit] <= '9';
}

bool SourceTokens::IsWord(std::string_view word) const {
    return text == word;
}

WrittenNumbers NumbersAfter(SourceText& source, const InputPlace& from) {
    SourceTokens tokens(source, from);
    WrittenNumbers run;
    tokens.Next();
    while (tokens.Next() && tokens.IsNumber()) {
        ++run.count;
        run.last = tokens.Place();
    }
    run.closed = tokens.IsWord("end");
    return run;
}

}  // namespace orvalo
