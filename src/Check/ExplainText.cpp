#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string_view>

#include "Check/ErrorCollector.h"
#include "Check/Explanations.h"
#include "Common/Bytes.h"

// Errors in the text itself: bytes that begin no token, numbers and names that other programs write otherwise.

namespace orvalo {

namespace {

bool IsLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

/// What a file that is no plain text begins with.
struct Mark {
    std::string_view bytes;
    const char* message;
    bool removable;
};
constexpr Mark marks[] = {
    {"\xEF\xBB\xBF", "The file begins with a byte order mark (BOM). Save it as UTF-8 without one.", true},
    {"\xFF\xFE", "The file is UTF-16 text. Save it as UTF-8 or ASCII.", false},
    {"\xFE\xFF", "The file is UTF-16 text. Save it as UTF-8 or ASCII.", false},
    {"\x1F\x8B", "The file is compressed by gzip. Unpack it first.", false},
    {"PK\x03\x04", "The file is a ZIP archive. Unpack it first.", false},
};

/// What stands where something else is written in this format.
struct Habit {
    std::string_view bytes;
    const char* message;
    std::string_view replacement;
};
constexpr Habit habits[] = {
    {"//", "Comments begin with ';', '%' or '$'.", ";"},
    {"/*", "Comments begin with ';', '%' or '$' and go to the end of the line.", ";"},
    {"#", "Comments begin with ';', '%' or '$'.", ";"},
    {"!", "Comments begin with ';', '%' or '$'.", ";"},
    {"'", "Names stand in double quotes.", "\""},
    {"`", "Names stand in double quotes.", "\""},
    {"\xE2\x80\x9C", "These are typographic quotes. Names stand in plain double quotes.", "\""},
    {"\xE2\x80\x9D", "These are typographic quotes. Names stand in plain double quotes.", "\""},
    {"\xE2\x80\x9E", "These are typographic quotes. Names stand in plain double quotes.", "\""},
    {"\xE2\x80\x98", "These are typographic quotes. Names stand in plain double quotes.", "\""},
    {"\xE2\x80\x99", "These are typographic quotes. Names stand in plain double quotes.", "\""},
    {"\xE2\x88\x92", "This is a typographic minus sign. Write a plain '-'.", "-"},
    {"\xC2\xA0", "This is a no-break space. Write a plain blank.", " "},
    {"(", "Values stand without parentheses: blanks or commas separate them.", " "},
    {")", "Values stand without parentheses: blanks or commas separate them.", " "},
    {"[", "Values stand without brackets: blanks or commas separate them.", " "},
    {"]", "Values stand without brackets: blanks or commas separate them.", " "},
    {"{", "Values stand without braces: a section ends with END.", " "},
    {"}", "Values stand without braces: a section ends with END.", " "},
    {":", "A value follows its property after a blank or '='.", " "},
    {"<", "Values stand without angle brackets.", " "},
    {">", "Values stand without angle brackets.", " "},
    {"*", "Values are plain numbers; there is no arithmetic.", " "},
};

const Habit* FindHabit(std::string_view text) {
    const auto* const found = std::find_if(std::begin(habits), std::end(habits),
                                           [&](const Habit& habit) { return text.starts_with(habit.bytes); });
    return found == std::end(habits) ? nullptr : found;
}

void TellHabit(Diagnostic& diagnostic, const Habit& habit, const InputPlace& place) {
    AddNote(diagnostic, habit.message, place, habit.bytes.size());
    diagnostic.fixes.push_back({place, habit.bytes.size(), std::string(habit.replacement)});
}

std::string ShownByte(unsigned char byte) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    if (byte > ' ' && byte < 127) return std::string("'") + static_cast<char>(byte) + "'";
    return std::string("of value 0x") + digits[byte >> 4U] + digits[byte & 15U];
}

/// Tells of a byte that stands where it may not.
void TellByte(Diagnostic& diagnostic, std::string_view text, const InputPlace& place) {
    if (text.empty()) return;
    if (const Habit* const habit = FindHabit(text)) return TellHabit(diagnostic, *habit, place);
    const auto byte = static_cast<unsigned char>(text.front());
    AddNote(diagnostic,
            byte < 128 ? "The character " + ShownByte(byte) + " stands in comments only."
                       : "Only ASCII characters may stand outside of comments; this byte is " + ShownByte(byte) + ".",
            place, 1);
}

bool IsExponentOfFortran(std::string_view token, std::size_t at) {
    return at > 0 && at + 1 < token.size() && (token[at] | 0x20) == 'd' &&
           (IsDigit(token[at + 1]) || token[at + 1] == '+' || token[at + 1] == '-');
}

void TellDecimalComma(Diagnostic& diagnostic, const InputPlace& comma) {
    AddNote(diagnostic, "There is no decimal comma: a comma separates numbers as a blank does. Write a point.", comma,
            1);
    diagnostic.fixes.push_back({comma, 1, "."});
}

/// A name with a point, whose first part was taken for a word.
bool ExplainUnquotedName(Diagnostic& diagnostic, ErrorCollector& errors) {
    std::size_t at = 0;
    const std::string line(errors.Source().LineOf(diagnostic.place, at));
    std::size_t begin = at;
    while (begin > 0 && (IsLetter(line[begin - 1]) || IsDigit(line[begin - 1]) || line[begin - 1] == '_')) --begin;
    if (begin == at || !IsLetter(line[begin])) return false;
    const std::size_t size = std::min(line.find_first_of(" \t,=\";%$", at), line.size()) - begin;
    InputPlace place = diagnostic.place;
    place.offset -= at - begin;
    place.column -= at - begin;
    AddNote(diagnostic, "Names stand in double quotes.", place, size);
    diagnostic.fixes.push_back({place, size, '"' + line.substr(begin, size) + '"'});
    return true;
}

bool IsSign(char c) {
    return c == '+' || c == '-';
}

}  // namespace

void ExplainCharacter(Diagnostic& diagnostic, ErrorCollector& errors) {
    const std::string_view text = errors.Source().From(diagnostic.place);
    diagnostic.length = 1;
    for (const Mark& mark : marks) {
        if (diagnostic.place.offset != 0 || !text.starts_with(mark.bytes)) continue;
        diagnostic.length = mark.bytes.size();
        AddNote(diagnostic, mark.message);
        if (mark.removable) AddFix(diagnostic, "");
        return;
    }
    if (const Habit* const habit = FindHabit(text)) diagnostic.length = habit->bytes.size();
    TellByte(diagnostic, text, diagnostic.place);
}

void ExplainCharacterInWord(Diagnostic& diagnostic, ErrorCollector& errors) {
    const std::string text(errors.Source().From(diagnostic.place));
    if (!text.starts_with('"')) {
        std::size_t end = 0;
        while (end < text.size() && (IsLetter(text[end]) || IsDigit(text[end]) || text[end] == '_')) ++end;
        AddNote(diagnostic, "A word consists of letters, digits and '_'.");
        return TellByte(diagnostic, std::string_view(text).substr(end), Moved(diagnostic.place, end));
    }
    constexpr std::string_view kept = "_.+-= \t,;%$\"";
    std::size_t odd = 1;
    while (odd < text.size() && (IsLetter(text[odd]) || IsDigit(text[odd]) || kept.find(text[odd]) != kept.npos)) ++odd;
    const InputPlace oddPlace = Moved(diagnostic.place, odd);
    const char byte = odd < text.size() ? text[odd] : '\0';
    if (byte == '/' || byte == '\\' || byte == ':') {
        AddNote(diagnostic,
                "A name holds no directory and no drive: files are looked for, and written, in the directory of the "
                "main file.",
                oddPlace, 1);
        const auto length = static_cast<std::size_t>(std::min<std::uint64_t>(diagnostic.length, text.size()));
        const std::string_view name = std::string_view(text).substr(0, length);
        diagnostic.fixes.push_back(
            {diagnostic.place, diagnostic.length, '"' + std::string(name.substr(name.find_last_of("/\\:") + 1))});
    } else {
        AddNote(diagnostic,
                "Names consist of letters, digits and _ . + - = ; this byte is " +
                    ShownByte(static_cast<unsigned char>(byte)) + ".",
                oddPlace, 1);
    }
}

void ExplainCharacterInNumber(Diagnostic& diagnostic, ErrorCollector& errors) {
    if (ExplainUnquotedName(diagnostic, errors)) return;
    const std::string token(errors.Source().TokenAt(diagnostic.place));
    std::size_t odd = 0;
    while (odd < token.size() &&
           (IsDigit(token[odd]) || token[odd] == '.' || IsSign(token[odd]) ||
            ((token[odd] | 0x20) == 'e' && odd + 1 < token.size() && !IsLetter(token[odd + 1])))) {
        ++odd;
    }
    const InputPlace place = Moved(diagnostic.place, odd);
    if (IsExponentOfFortran(token, odd)) {
        AddNote(diagnostic, "The exponent of a number is written with 'e', not with 'd'.", place, 1);
        diagnostic.fixes.push_back({place, 1, "e"});
    } else if (IsSign(token[0]) && (token.size() == 1 || !(IsDigit(token[1]) || token[1] == '.'))) {
        AddNote(diagnostic, "A sign must be followed by a number.");
    } else if (odd < token.size() && IsLetter(token[odd])) {
        AddNote(diagnostic,
                "Numbers have no units: '" + token.substr(odd) +
                    "' is to be left out. Times are in microseconds, frequencies in kilohertz, temperatures in degrees "
                    "Celsius, lengths in one unit of your choice.",
                place, token.size() - odd);
        diagnostic.fixes.push_back({place, token.size() - odd, ""});
    } else if (odd < token.size()) {
        TellByte(diagnostic, std::string_view(token).substr(odd), place);
    } else {
        AddNote(diagnostic, "A number has one point at most, and digits after it or after its exponent letter.");
    }
}

void ExplainOpenName(Diagnostic& diagnostic, ErrorCollector& errors) {
    const std::string token(errors.Source().TokenAt(diagnostic.place));
    if (!token.starts_with('"')) {
        AddNote(diagnostic, "The number is not complete.");
        return;
    }
    AddNote(diagnostic, "The name that begins here has no closing quote on its line.");
    const std::size_t end = std::min(token.find_first_of(" \t", 1), token.size());
    diagnostic.fixes.push_back({Moved(diagnostic.place, end), 0, "\""});
}

bool ExplainCommaAfter(Diagnostic& diagnostic, ErrorCollector& errors) {
    const std::string_view text = errors.Source().From(diagnostic.place);
    const std::size_t comma =
        std::min(text.find_first_not_of("0123456789", text.starts_with('-') ? 1 : 0), text.size());
    if (comma == 0 || comma + 1 >= text.size() || text[comma] != ',' || !IsDigit(text[comma + 1])) return false;
    TellDecimalComma(diagnostic, Moved(diagnostic.place, comma));
    return true;
}

bool ExplainNeighbours(Diagnostic& diagnostic, ErrorCollector& errors) {
    std::size_t at = 0;
    const std::string line(errors.Source().LineOf(diagnostic.place, at));
    const auto placeAt = [&](std::size_t i) {
        InputPlace place = diagnostic.place;
        place.offset -= at - i;
        place.column -= at - i;
        return place;
    };
    // A comment sign that ends a word is swallowed with it.
    const std::size_t sign = line.substr(0, at).find_last_of(";%$");
    if (sign != std::string::npos && sign > 0 && (IsLetter(line[sign - 1]) || IsDigit(line[sign - 1]))) {
        AddNote(diagnostic, "A comment sign right after a word or a number is swallowed with it: leave a blank before.",
                placeAt(sign), 1);
        diagnostic.fixes.push_back({placeAt(sign), 0, " "});
        errors.SpoilLine();
        return true;
    }
    if (at > 1 && at < line.size() && line[at - 1] == ',' && IsDigit(line[at - 2]) && IsDigit(line[at])) {
        TellDecimalComma(diagnostic, placeAt(at - 1));
        return true;
    }
    return false;
}

}  // namespace orvalo
