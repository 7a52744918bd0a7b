#include "Check/ResultsField.h"

#include <algorithm>
#include <charconv>
#include <iterator>

#include "Check/Explanations.h"
#include "Check/ResultsFindings.h"
#include "Common/Bytes.h"

namespace orvalo {

namespace {

bool IsLetter(char c) {
    return ToLower(c) >= 'a' && ToLower(c) <= 'z';
}
bool HasDigitAt(std::string_view text, std::size_t at) {
    return at < text.size() && IsDigit(text[at]);
}

/// What other programs write where there is no number.
struct Absence {
    std::string_view text;
    const char* meant;
};
constexpr Absence absences[] = {{"na", "nan"},      {"n/a", "nan"},      {"#n/a", "nan"},     {"null", "nan"},
                                {"none", "nan"},    {"-", "nan"},        {"--", "nan"},       {"?", "nan"},
                                {"missing", "nan"}, {"1.#qnan", "nan"},  {"1.#ind", "nan"},   {"-1.#ind", "nan"},
                                {"1.#inf", "inf"},  {"-1.#inf", "-inf"}, {"-1.#qnan", "nan"}, {"\xE2\x88\x9E", "inf"}};

std::string Lower(std::string_view text) {
    std::string lower(text);
    for (char& c : lower) c = ToLower(c);
    return lower;
}

void Replace(Diagnostic& diagnostic, const ResultsField& field, std::size_t at, std::size_t size, const char* text) {
    AddFix(diagnostic, std::string(field.text).replace(at, size, text));
}

void TellMinus(Diagnostic& diagnostic, const ResultsField& field) {
    int number = 0;
    const std::string_view text = field.text;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || number < -32768) {
        return AddNote(diagnostic, "Indices have no sign: a negative one is written plus 65536.");
    }
    const std::string written = std::to_string((number + 65536) % 65536);
    AddNote(diagnostic, "Indices have no sign: a negative one is written plus 65536, here as " + written + ".");
    AddFix(diagnostic, written);
}

bool ExplainSeparator(Diagnostic& diagnostic, const ResultsField& field) {
    const std::string_view text = field.text;
    const char odd = text[field.odd];
    if (text.find_first_not_of(" \t\r\v\f") == text.npos) {
        AddNote(diagnostic, "The line ends with blanks. Leave them out.");
        AddFix(diagnostic, "");
        return true;
    }
    if (odd == ' ') {
        AddNote(diagnostic, "Columns are separated by tabs; indices have no blanks around them.");
        std::string mended;
        for (const char c : text) {
            if (c != ' ') mended += c;
            if (c == ' ' && !mended.empty() && mended.back() != '\t') mended += '\t';
        }
        AddFix(diagnostic, mended.substr(0, mended.find_last_not_of('\t') + 1));
        return true;
    }
    if (odd != ',' && odd != ';') return false;
    const auto commas = std::count(text.begin(), text.end(), odd);
    if (odd == ',' && commas == 1 && !field.isIndex && HasDigitAt(text, field.odd + 1)) {
        AddNote(diagnostic, "There is no decimal comma: write a point.");
        Replace(diagnostic, field, field.odd, 1, ".");
    } else {
        AddNote(diagnostic,
                std::string("Columns are separated by tabs, not by ") + (odd == ',' ? "commas." : "semicolons."));
        std::string mended(text);
        std::replace(mended.begin(), mended.end(), odd, '\t');
        AddFix(diagnostic, std::move(mended));
    }
    return true;
}

bool ExplainIndex(Diagnostic& diagnostic, const ResultsField& field) {
    if (!field.isIndex) return false;
    const std::string_view text = field.text;
    if (text.front() == '-' && HasDigitAt(text, 1)) {
        TellMinus(diagnostic, field);
        return true;
    }
    if (text[field.odd] != '.' && text.front() != '+') return false;
    AddNote(diagnostic, "Indices are whole numbers, written with digits alone.");
    const bool whole = field.odd > 0 && text.find_first_not_of('0', field.odd + 1) == text.npos;
    if (whole) AddFix(diagnostic, std::string(text.substr(0, field.odd)));
    return true;
}

bool ExplainNotation(Diagnostic& diagnostic, const ResultsField& field) {
    constexpr std::string_view minus = "\xE2\x88\x92";
    const std::string_view text = field.text;
    const std::string_view rest = text.substr(field.odd);
    if (field.odd > 0 && (rest[0] == 'd' || rest[0] == 'D') && rest.size() > 1 && !IsLetter(rest[1])) {
        AddNote(diagnostic, "The exponent of a number is written with 'e', not with 'd'.");
        Replace(diagnostic, field, field.odd, 1, "e");
    } else if (rest.starts_with(minus)) {
        AddNote(diagnostic, "This is a typographic minus sign. Write a plain '-'.");
        Replace(diagnostic, field, field.odd, minus.size(), "-");
    } else if (field.odd == 0 && (text[0] == '"' || text[0] == '\'') && text.size() > 2 && text.back() == text[0]) {
        AddNote(diagnostic, "Numbers stand without quotes.");
        AddFix(diagnostic, std::string(text.substr(1, text.size() - 2)));
    } else if (text.find_first_not_of('*') == text.npos) {
        AddNote(diagnostic, "Asterisks stand for a number that did not fit into the width that the writer had for it.");
    } else {
        return false;
    }
    return true;
}

bool ExplainAbsence(Diagnostic& diagnostic, const ResultsField& field) {
    const std::string lower = Lower(field.text);
    const auto* const found = std::find_if(std::begin(absences), std::end(absences),
                                           [&](const Absence& absence) { return absence.text == lower; });
    if (field.isIndex || found == std::end(absences)) return false;
    AddNote(diagnostic, std::string("A value that is no number is written as ") + found->meant + ".");
    AddFix(diagnostic, found->meant);
    return true;
}

bool ExplainText(Diagnostic& diagnostic, const ResultsField& field, const std::string& columnName) {
    constexpr std::string_view commentSigns = "#;%$/!";
    const std::string_view rest = field.text.substr(field.odd);
    if (field.text == columnName) {
        AddNote(diagnostic,
                "This is the name of the column: the line of names may stand only once, as the first line.");
    } else if (field.odd == 0 && commentSigns.find(rest[0]) != commentSigns.npos) {
        AddNote(diagnostic, "There are no comments in results.");
    } else if (field.odd > 0 && IsLetter(rest[0])) {
        AddNote(diagnostic, "Numbers have no units: leave " + Shown(rest) + " out.");
        AddFix(diagnostic, std::string(field.text.substr(0, field.odd)));
    } else {
        return false;
    }
    return true;
}

}  // namespace

std::string Held(const ResultsField& field, const std::string& columnName) {
    return "Column " + std::to_string(field.column + 1) + " (" + Shown(columnName) + ") holds " + Shown(field.text) +
           ", which is no " + (field.isIndex ? "index" : "number");
}

void ExplainField(Diagnostic& diagnostic, const ResultsField& field, const std::string& columnName) {
    constexpr std::size_t longestFix = 1000;
    AddNote(diagnostic, Held(field, columnName) + ".");
    if (ExplainSeparator(diagnostic, field) || ExplainIndex(diagnostic, field) || ExplainAbsence(diagnostic, field) ||
        ExplainNotation(diagnostic, field) || ExplainText(diagnostic, field, columnName)) {
        if (field.text.size() > longestFix) diagnostic.fixes.clear();
        return;
    }
    AddNote(diagnostic, field.isIndex ? "Indices are whole numbers, written with digits alone."
                                      : "Values are decimal numbers with a point, such as -2e-3, or inf and nan.");
}

}  // namespace orvalo
