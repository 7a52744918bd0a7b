#include <algorithm>
#include <cstddef>
#include <limits>
#include <string_view>

#include <Orvalo3DReader/Common/ReaderMessages.h>

#include "Check/ErrorCollector.h"
#include "Check/Explanations.h"
#include "Check/RowLists.h"
#include "Check/SourceTokens.h"
#include "Reader/Sections.h"

// Single numbers of rows, and what ends rows too early or too late.

namespace orvalo {

namespace {

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}
bool IsLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

using M = ReaderMessages;

struct EndWord {
    std::string_view word;
};

constexpr const char* wholeNumbers =
    "The coordinates and the material of a row are whole numbers of digits alone: no sign, no point, no exponent.";

/// A row with decimal points, of which the first is where the text begins: proposes whole numbers where they are some.
void ExplainDecimals(Diagnostic& diagnostic, std::string_view text) {
    diagnostic.length = std::min(text.find_first_not_of("0123456789", 1), text.size());
    AddNote(diagnostic, wholeNumbers);
    // What the point stands in is the coordinate before the one that the error is about; the material comes last.
    const int code = diagnostic.code;
    int points = code == ReaderMessages::InvalidYCoordinate.code   ? 3
                 : code == ReaderMessages::InvalidZCoordinate.code ? 2
                                                                   : 1;
    std::string whole;
    std::size_t at = 0;
    for (std::size_t end = 0; points > 0 && at < text.size(); --points) {
        const std::size_t digits = std::min(text.find_first_not_of("0123456789", at), text.size());
        end = digits;
        if (digits < text.size() && text[digits] == '.') {
            end = std::min(text.find_first_not_of('0', digits + 1), text.size());
        }
        whole += text.substr(at, digits - at);
        if (end < text.size() && (IsDigit(text[end]) || text[end] == '.')) return;
        const std::size_t next = points == 1 ? end : std::min(text.find_first_not_of(" \t,", end), text.size());
        whole += text.substr(end, next - end);
        at = next;
    }
    diagnostic.fixes.push_back({diagnostic.place, at, whole});
}

/// Text that cannot be a whole number of a row. False where there is such a number.
bool ExplainNoDigits(Diagnostic& diagnostic, ErrorCollector& errors) {
    std::size_t at = 0;
    const std::string around(errors.Source().Around(diagnostic.place, 1, 64, at));
    const std::string_view text = std::string_view(around).substr(at);
    const bool afterDigit = at > 0 && IsDigit(around[0]);
    if (text.empty() || IsDigit(text.front())) return false;
    if (text.front() == '=') {
        AddNote(diagnostic, "No '=' stands before rows, nor among them.");
        AddFix(diagnostic, " ");
    } else if (text.front() == '-') {
        AddNote(diagnostic, "The coordinates of rows go from 0 to 32767, without a sign.");
    } else if (text.front() == '+') {
        AddNote(diagnostic, wholeNumbers);
        diagnostic.fixes.push_back({diagnostic.place, 1, ""});
    } else if (text.front() == '.' && afterDigit) {
        ExplainDecimals(diagnostic, text);
    } else if (IsLetter(text.front()) && !afterDigit) {
        const RowList list = CurrentRows(errors);
        AddNote(diagnostic, "Here row " + std::to_string(diagnostic.row) + " goes on: a row is " + list.fields + '.');
    } else {
        AddNote(diagnostic, wholeNumbers);
    }
    return true;
}

/// Whether a number stands there: what is wrong may then lie before it.
bool StartsWithDigitOrPoint(const Diagnostic& diagnostic, ErrorCollector& errors) {
    const std::string_view text = errors.Source().TokenAt(diagnostic.place);
    return !text.empty() && (IsDigit(text.front()) || text.front() == '.');
}

std::string DefinedMaterials(const ErrorCollector& errors) {
    std::string text;
    std::size_t count = 0;
    for (const SectionRecord& section : errors.record.sections) {
        if (section.section->word != "materials") continue;
        for (const PropertyRecord& material : section.properties) {
            if (material.Whole() < 1) continue;
            if (++count > 20) return text + ", ...";
            text += (text.empty() ? "" : ", ") + std::to_string(material.Whole());
        }
    }
    return text;
}

const PropertyRecord* Count(const ErrorCollector& errors) {
    const SectionRecord* const section = errors.CurrentSection();
    if (section == nullptr) return nullptr;
    const auto& open = errors.OpenProperties();
    const bool nested = !open.empty() && open.back().nested;
    for (auto property = section->properties.rbegin(); property != section->properties.rend(); ++property) {
        if (property->word == "count" && property->nested == nested) return &*property;
        if (nested && !property->nested) return nullptr;
    }
    return nullptr;
}

/// Tells how many there are, where the last one stands, and proposes that number for the count.
void TellCount(Diagnostic& diagnostic, ErrorCollector& errors, std::uint64_t width) {
    const PropertyRecord* const count = Count(errors);
    if (count == nullptr || errors.OpenProperties().empty()) return;
    const InputPlace place = errors.record.PlaceOf(count->valuePlace);
    const std::size_t length = errors.Source().TokenAt(place).size();
    const char* const word = RowWord(errors);
    const InputPlace data = errors.record.PlaceOf(errors.OpenProperties().back().place);
    const auto asked = static_cast<std::uint64_t>(count->Whole());
    AddNote(diagnostic, "The count says " + Counted(asked, word) + '.', place, length);
    const WrittenNumbers run = NumbersAfter(errors.Source(), data);
    if (!run.closed || run.count % width != 0) return;
    AddNote(diagnostic, Counted(run.count / width, word) + " in all, of which the last one ends here.", run.last,
            errors.Source().TokenAt(run.last).size());
    if (run.count > 0) diagnostic.fixes.push_back({place, length, std::to_string(run.count / width)});
}

/// What stands where a number is to follow.
void TellNoNumber(Diagnostic& diagnostic, const Token& token) {
    const bool word = token.type == TokenType::Keyword;
    AddNote(diagnostic,
            (word ? '\'' + token.text + "' is no number. " : "") + "Between 'data' and its END stand numbers alone.");
}

constexpr EndWord end[] = {{"end"}};

/// Whether the current word is one before which rows end, or likely that END itself.
bool EndsRows(const ErrorCollector& errors) {
    return errors.Core().AtWord() || WordList(end).Nearest(errors.Core().token.text);
}

/// An END that is misspelt, or that the rows lack.
void ExplainRowsEnd(Diagnostic& diagnostic, ErrorCollector& errors) {
    const ReaderCore& core = errors.Core();
    const auto& open = errors.OpenProperties();
    const Token& token = core.token;
    const bool word = token.type == TokenType::Keyword;
    if (ExplainMisspeltEnd(diagnostic, errors) || open.empty()) return;
    const bool property = word && errors.CurrentSection()->section->words().Has(token.text);
    AddNote(diagnostic, "The rows begin here and have no END.", errors.record.PlaceOf(open.back().place),
            open.back().word.size());
    if (core.AtSection()) diagnostic.fixes.push_back({diagnostic.place, 0, "END END\n"});
    if (property) diagnostic.fixes.push_back({diagnostic.place, 0, "END "});
}

}  // namespace

void ExplainRowField(Diagnostic& diagnostic, ErrorCollector& errors) {
    if (StartsWithDigitOrPoint(diagnostic, errors) && ExplainRowShape(diagnostic, errors)) return;
    if (ExplainNoDigits(diagnostic, errors)) return;
    AddNote(diagnostic, "The coordinates of rows go from 0 to 32767.");
}

void ExplainRowMaterial(Diagnostic& diagnostic, ErrorCollector& errors) {
    if (StartsWithDigitOrPoint(diagnostic, errors) && ExplainRowShape(diagnostic, errors)) return;
    const std::string defined = DefinedMaterials(errors);
    const bool number = !ExplainNoDigits(diagnostic, errors);
    if (number && errors.Source().TokenAt(diagnostic.place) == "0") {
        AddNote(diagnostic, "Number 0 is air, which cannot be given to a cube.");
    }
    if (number && !defined.empty()) AddNote(diagnostic, "Defined materials: " + defined + '.');
}

void ExplainRowNumber(Diagnostic& diagnostic, ErrorCollector& errors) {
    const RowList list = CurrentRows(errors);
    if (StartsWithDigitOrPoint(diagnostic, errors) && ExplainRowShape(diagnostic, errors)) return;
    AddNote(diagnostic, "A row is " + list.fields + "; its last number is missing here.");
    if (errors.Core().token.type == TokenType::String) ExplainNoNumber(diagnostic, errors);
    if (!ExplainForeignText(diagnostic, errors)) ExplainRowShape(diagnostic, errors);
}

bool ExplainMisspeltEnd(Diagnostic& diagnostic, ErrorCollector& errors) {
    const ReaderCore& core = errors.Core();
    const bool word = core.token.type == TokenType::Keyword && !core.AtSection();
    if (!word || !WordList(end).Nearest(core.token.text)) return false;
    AddExpected(diagnostic, errors, end);
    return true;
}

void ExplainTooFewRows(Diagnostic& diagnostic, ErrorCollector& errors) {
    const ReaderCore& core = errors.Core();
    if (ExplainForeignText(diagnostic, errors)) return;
    const std::uint64_t read = diagnostic.row > 0 ? diagnostic.row - 1 : 0;
    const char* const word = RowWord(errors);
    if (core.token.type == TokenType::Number || core.token.type == TokenType::Equals) {
        ExplainNoDigits(diagnostic, errors);
    } else if (core.token.type == TokenType::Keyword && !EndsRows(errors)) {
        TellNoNumber(diagnostic, core.token);
    } else {
        ExplainRowsEnd(diagnostic, errors);
    }
    const PropertyRecord* const count = Count(errors);
    if (count != nullptr) {
        const InputPlace place = errors.record.PlaceOf(count->valuePlace);
        AddNote(diagnostic,
                "The count says " + Counted(static_cast<std::uint64_t>(count->Whole()), word) + "; " +
                    std::to_string(read) + (read == 1 ? " stands" : " stand") + " before this place.",
                place, errors.Source().TokenAt(place).size());
    }
    ExplainRowShape(diagnostic, errors);
}

void ExplainTooManyRows(Diagnostic& diagnostic, ErrorCollector& errors) {
    if (ExplainRowShape(diagnostic, errors)) return;
    TellCount(diagnostic, errors, CurrentRows(errors).width);
}

void ExplainSamples(Diagnostic& diagnostic, ErrorCollector& errors) {
    const Token& token = errors.Core().token;
    const bool word = token.type == TokenType::Keyword;
    if (word && !errors.Core().IsKeyword("end") && EndsRows(errors)) return ExplainRowsEnd(diagnostic, errors);
    if (diagnostic.code != M::NumericalValueExpected.code) {
        if (errors.OpenProperties().empty()) return AddNote(diagnostic, "The count was raised after the samples.");
        return TellCount(diagnostic, errors, 1);
    }
    if (token.type == TokenType::String && ExplainNoNumber(diagnostic, errors)) return;
    TellNoNumber(diagnostic, token);
}

void ExplainNoEnd(Diagnostic& diagnostic, ErrorCollector& errors) {
    const ReaderCore& core = errors.Core();
    const SectionRecord* const section = errors.CurrentSection();
    if (section == nullptr) return;
    if (!errors.OpenProperties().empty()) {
        if (core.token.type == TokenType::Keyword || core.AtSection()) return ExplainRowsEnd(diagnostic, errors);
        ExplainNoDigits(diagnostic, errors);
        return ExplainTooManyRows(diagnostic, errors);
    }
    const std::string name = section->section->name;
    AddNote(diagnostic, name + " begins here, is switched off, and has no END.", errors.record.PlaceOf(section->place),
            name.size());
    diagnostic.fixes.push_back({diagnostic.place, 0, "\nEND\n"});
}

}  // namespace orvalo
