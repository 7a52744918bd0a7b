#include "ModelWords.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <system_error>

#include "PathText.h"

namespace {

constexpr std::string_view blanks = " \t\r\n,=";
constexpr std::string_view commentStarts = "$%;";
constexpr std::string_view wordEnds = " \t\r\n,=$%;\"";

char ToLower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

}  // namespace

std::string ModelWords::Next() {
    SkipBlanksAndComments();
    if (text_.empty()) return {};
    std::string word;
    if (text_.front() == '"') {
        text_.remove_prefix(1);
        word = '"';
        word += TakeUntil("\"\n");
        text_.remove_prefix(std::min<std::size_t>(1, text_.size()));
    } else {
        word = TakeUntil(wordEnds);
    }
    std::transform(word.begin(), word.end(), word.begin(), ToLower);
    return word;
}

std::string_view ModelWords::TakeUntil(std::string_view ends) {
    const std::string_view taken = text_.substr(0, text_.find_first_of(ends));
    text_.remove_prefix(taken.size());
    return taken;
}

void ModelWords::SkipBlanksAndComments() {
    while (true) {
        text_.remove_prefix(std::min(text_.find_first_not_of(blanks), text_.size()));
        if (text_.empty() || commentStarts.find(text_.front()) == std::string_view::npos) return;
        TakeUntil("\r\n");
    }
}

bool MayBeReread(const std::string& path) {
    std::error_code unknown;
    return std::filesystem::is_regular_file(PathOf(path), unknown);
}

std::string ReadHead(const std::string& path, std::size_t limit) {
    if (!MayBeReread(path)) return {};
    std::ifstream file(PathOf(path), std::ios::binary);
    std::string head(limit, '\0');
    file.read(head.data(), static_cast<std::streamsize>(limit));
    head.resize(static_cast<std::size_t>(file.gcount()));
    return head;
}
