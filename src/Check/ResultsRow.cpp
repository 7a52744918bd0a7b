#include "Check/ResultsRow.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

#include "Check/Explanations.h"
#include "Check/ResultsField.h"
#include "Check/ResultsFindings.h"

namespace orvalo {

namespace {

bool IsBlank(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

/// How far a line reads as numbers between separators.
struct Walk {
    /// The columns that were passed.
    unsigned int columns = 0;
    const char* p = nullptr;
    /// The text that stands instead of a number in the next column; empty at the end of the columns or of the line.
    ResultsField field;
};

/// The field at `p` up to the next tab; values end at a blank too.
ResultsField FieldAt(const Walk& walk, const char* odd, const TextLine& line, bool isIndex) {
    const char* begin = isIndex ? walk.p : std::find_if_not(walk.p, line.end, IsBlank);
    const bool onlyBlanks = begin == line.end;
    // Of a line that ends with blanks they themselves are what is odd.
    if (onlyBlanks) begin = walk.p;
    const char* const end =
        std::find_if(begin, line.end, [&](char c) { return !onlyBlanks && (c == '\t' || (!isIndex && c == ' ')); });
    return {isIndex, walk.columns, {begin, end}, static_cast<std::size_t>(std::max(odd, begin) - begin)};
}

/// Goes on after the field found last, to the next one that is no number.
void FindField(Walk& walk, const TextLine& line, const TextColumns& columns) {
    if (!walk.field.text.empty()) {
        walk.p = SkipTabs(walk.field.text.data() + walk.field.text.size());
        ++walk.columns;
    }
    walk.field = {};
    for (; walk.columns < columns.names.size() && walk.p != line.end; ++walk.columns) {
        const bool isIndex = walk.columns < columns.indices;
        short index = 0;
        double value = 0;
        const char* const odd = isIndex ? ReadIndex(walk.p, index) : ParseNumber(walk.p, line.end, value);
        // A tab at the start of a line is an index of 0.
        const bool ends = odd == line.end || (isIndex ? *odd == '\t' : IsBlank(*odd));
        if (!ends || (!isIndex && odd == walk.p)) {
            walk.field = FieldAt(walk, odd, line, isIndex);
            return;
        }
        walk.p = SkipTabs(odd);
    }
}

void MoveTo(Diagnostic& diagnostic, std::size_t bytes, std::size_t length) {
    diagnostic.place = Moved(diagnostic.place, bytes);
    diagnostic.length = length;
}

/// "'ux', 'uy' and 3 more".
std::string Names(const TextColumns& columns, std::size_t from) {
    constexpr std::size_t most = 4;
    const std::size_t count = columns.names.size() - from;
    const std::size_t listed = count <= most + 1 ? count : most;
    std::string text;
    for (std::size_t i = 0; i < listed; ++i) {
        if (i > 0) text += i + 1 == count ? " and " : ", ";
        text += Shown(columns.names[from + i]);
    }
    return listed == count ? text : text + " and " + std::to_string(count - listed) + " more";
}

void ExplainSurplus(Diagnostic& diagnostic, const TextLine& line, const Walk& walk, const TextColumns& columns) {
    const std::string_view rest(walk.p, static_cast<std::size_t>(line.end - walk.p));
    MoveTo(diagnostic, static_cast<std::size_t>(walk.p - line.begin), rest.size());
    if (rest.find_first_not_of(" \t\r\v\f") == rest.npos) {
        AddNote(diagnostic, "The line ends with blanks. Leave them out: after the last value only tabs may follow.");
        return AddFix(diagnostic, "");
    }
    AddNote(diagnostic, "The first line names " + Counted(columns.names.size(), "column") + "; here begins one more.");
}

bool ExplainEmpty(Diagnostic& diagnostic, const TextLine& line) {
    if (std::find_if_not(line.begin, line.end, IsBlank) != line.end) return false;
    const auto size = static_cast<std::uint64_t>(line.end - line.begin);
    diagnostic.length = size;
    AddNote(diagnostic, "The line is empty. Every line after the first must be a row.");
    if (line.newline) diagnostic.fixes.push_back({diagnostic.place, size + (*line.end == '\r' ? 2 : 1), ""});
    return true;
}

void ExplainLack(Diagnostic& diagnostic, const TextLine& line, const Walk& walk, const TextColumns& columns) {
    const std::string_view text(line.begin, static_cast<std::size_t>(line.end - line.begin));
    const InputPlace start = diagnostic.place;
    MoveTo(diagnostic, text.size(), 0);
    AddNote(diagnostic, "The line ends after " + Counted(walk.columns, "column") + " of " +
                            std::to_string(columns.names.size()) + ": " + Names(columns, walk.columns) +
                            " must follow.");
    const std::size_t gap = text.find("\t\t");
    if (gap == text.npos) return;
    AddNote(diagnostic, "Several tabs count as one: a value that is missing is written as nan.", Moved(start, gap), 2);
}

}  // namespace

void ExplainRow(Diagnostic& diagnostic, const TextLine& line, const TextColumns& columns) {
    constexpr int maxFurther = 3;
    if (ExplainEmpty(diagnostic, line)) return;
    const InputPlace start = diagnostic.place;
    Walk walk;
    walk.p = line.begin;
    FindField(walk, line, columns);
    if (walk.field.text.empty()) {
        if (walk.p != line.end) return ExplainSurplus(diagnostic, line, walk, columns);
        return ExplainLack(diagnostic, line, walk, columns);
    }
    MoveTo(diagnostic, static_cast<std::size_t>(walk.field.text.data() - line.begin), walk.field.text.size());
    ExplainField(diagnostic, walk.field, columns.names[walk.field.column]);
    for (int i = 0; i < maxFurther; ++i) {
        FindField(walk, line, columns);
        const ResultsField& field = walk.field;
        // A line of names is one mistake.
        if (field.text.empty() || field.text == columns.names[field.column]) return;
        AddNote(diagnostic, Held(field, columns.names[field.column]) + " either.",
                Moved(start, static_cast<std::size_t>(field.text.data() - line.begin)), field.text.size());
    }
}

}  // namespace orvalo
