#include <array>
#include <charconv>
#include <cstddef>

#include "Check/ErrorCollector.h"
#include "Check/Explanations.h"
#include "Check/SourceTokens.h"
#include "Common/ParseNumber.h"

// What explanations are made of, and the mistakes that can stand wherever a value is due.

namespace orvalo {

namespace {

bool IsNameByte(char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
           std::string_view("_.+-").find(c) != std::string_view::npos;
}

/// Whether the text is a number as files write them, and nothing more.
bool IsNumber(std::string_view text) {
    if (text.empty() || text.find_first_not_of("0123456789.eE+-") != text.npos) return false;
    const std::string padded = std::string(text) + std::string(16, '\0');
    const char* const end = padded.data() + text.size();
    double value;
    return ParseNumber(padded.data(), end, value) == end;
}

void ExplainEquals(Diagnostic& diagnostic, ErrorCollector& errors, const PropertyRecord& property) {
    std::size_t at = 0;
    const std::string_view line = errors.Source().LineOf(diagnostic.place, at);
    const std::size_t before = at == 0 ? std::string_view::npos : line.find_last_not_of(" \t,", at - 1);
    const bool second = before != std::string_view::npos && line[before] == '=';
    const std::string word(property.word);
    AddNote(diagnostic, second ? "One '=' at most stands between a property and its value."
                               : "No '=' stands between '" + word + "' and its value here.");
    AddFix(diagnostic, " ");
}

}  // namespace

bool ExplainNoNumber(Diagnostic& diagnostic, ErrorCollector& errors) {
    const ReaderCore& core = errors.Core();
    const SectionRecord* const section = errors.CurrentSection();
    if (section == nullptr || errors.OpenProperties().empty()) return false;
    const PropertyRecord& property = errors.OpenProperties().back();
    const Token& token = core.token;
    const bool word = token.type == TokenType::Keyword;
    if (core.AtSection() || (word && section->section->words().Has(token.text))) {
        AddNote(diagnostic, "The value of '" + std::string(property.word) + "' is missing.",
                errors.record.PlaceOf(property.place), property.word.size());
        return true;
    }
    if (token.type == TokenType::Equals) {
        ExplainEquals(diagnostic, errors, property);
        return true;
    }
    if (token.type != TokenType::String || !IsNumber(token.text)) return false;
    AddNote(diagnostic, "Numbers stand without quotes.");
    AddFix(diagnostic, token.text);
    return true;
}

std::string Shown(double number) {
    std::array<char, 32> text{};
    return {text.data(), std::to_chars(text.data(), text.data() + text.size(), number).ptr};
}

std::string Joined(const std::vector<std::string_view>& words) {
    std::string text;
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (i > 0) text += i + 1 == words.size() ? " and " : ", ";
        text += '\'' + std::string(words[i]) + '\'';
    }
    return text;
}

std::string Counted(std::uint64_t count, const char* what) {
    return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
}

bool QuoteName(Diagnostic& diagnostic, ErrorCollector& errors) {
    const std::string_view text = errors.Source().From(diagnostic.place);
    std::size_t size = 0;
    while (size < text.size() && IsNameByte(text[size])) ++size;
    if (size == 0) return false;
    const std::string name(text.substr(0, size));
    diagnostic.length = size;
    AddNote(diagnostic, "Names stand in double quotes.");
    if (text.substr(size).starts_with('"')) {
        diagnostic.fixes.push_back({diagnostic.place, 0, "\""});
        errors.SpoilLine();
        return true;
    }
    AddFix(diagnostic, '"' + name + '"');
    // What is left of a name with a point would be taken for a number.
    if (name.find_first_of(".+-") != std::string::npos) errors.SpoilLine();
    return true;
}

InputPlace Moved(InputPlace place, std::size_t bytes) {
    place.offset += bytes;
    place.column += bytes;
    return place;
}

}  // namespace orvalo
