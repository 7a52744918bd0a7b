#include <algorithm>
#include <cstddef>
#include <string_view>

#include "Check/ErrorCollector.h"
#include "Check/Explanations.h"
#include "Check/RowLists.h"
#include "Check/SourceTokens.h"

// What is wrong with a list of rows as a whole.

namespace orvalo {

namespace {

struct RowKind {
    std::string_view section;
    std::uint64_t width;
    const char* fields;
    const char* word;
};
constexpr RowKind rowKinds[] = {
    {"cubes", 4, "x y z material", "row"},
    {"damping", 5, "x y z material coefficient", "row"},
    {"set", 3, "x y z", "point"},
    {"piezo", 0, "", "point"},
    {"table", 0, "", "sample"},
};

const RowKind* CurrentKind(const ErrorCollector& errors) {
    const SectionRecord* const section = errors.CurrentSection();
    if (section == nullptr) return nullptr;
    for (const RowKind& kind : rowKinds) {
        if (kind.section == section->section->word) return &kind;
    }
    return nullptr;
}

/// The first line of a list that holds no whole number of rows.
struct OddLine {
    std::uint64_t numbers = 0;
    InputPlace place;
    /// Whether it is the first line of the list.
    bool first = false;
};

OddLine FindOddLine(SourceText& source, const InputPlace& data, std::uint64_t lastLine, std::uint64_t width) {
    SourceTokens tokens(source, data);
    tokens.Next();
    OddLine line;
    line.place = data;
    bool firstLine = true;
    for (;;) {
        const bool number = tokens.Next() && tokens.IsNumber();
        if (number && tokens.Line() == line.place.line) {
            ++line.numbers;
            continue;
        }
        line.first = firstLine && line.numbers > 0;
        if (line.numbers % width != 0) return line;
        if (!number || tokens.Line() > lastLine) return {};
        firstLine = firstLine && line.numbers == 0;
        line.numbers = 1;
        line.place = tokens.Place();
    }
}

/// Proposes the other format for rows that have one number more or fewer.
void ProposeFormat(Diagnostic& diagnostic, ErrorCollector& errors, const RowList& list) {
    const PropertyRecord* const format = errors.CurrentSection()->Find("format");
    if (format == nullptr) return;
    const InputPlace place = errors.record.PlaceOf(format->valuePlace);
    const std::size_t length = errors.Source().TokenAt(place).size();
    AddNote(diagnostic,
            list.hasTemperatures ? "In format 1 every row ends with a temperature. Did you mean format 0?"
                                 : "In format 0 rows have no temperature. Did you mean format 1?",
            place, length);
    diagnostic.fixes.push_back({place, length, list.hasTemperatures ? "0" : "1"});
}

const PropertyRecord* Data(const ErrorCollector& errors) {
    const auto& open = errors.OpenProperties();
    return open.empty() ? nullptr : &open.back();
}

/// The sign of a comment that ends the text, on its last line that is not blank; npos for none.
std::size_t CommentBefore(std::string_view text) {
    const std::size_t last = text.find_last_not_of(" \t,\r\n");
    if (last == std::string_view::npos) return last;
    const std::size_t lineFeed = text.rfind('\n', last);
    const std::size_t start = lineFeed == std::string_view::npos ? 0 : lineFeed + 1;
    const std::size_t sign = text.substr(0, last + 1).find_first_of(";%$", start);
    // One on the line of what follows would have swallowed it.
    return text.find('\n', last) == std::string_view::npos ? std::string_view::npos : sign;
}

}  // namespace

RowList CurrentRows(const ErrorCollector& errors) {
    const RowKind* const kind = CurrentKind(errors);
    if (kind == nullptr) return {};
    RowList list{kind->width, kind->fields, kind->section == "cubes", false};
    const PropertyRecord* const format = errors.CurrentSection()->Find("format");
    if (list.mayHaveTemperatures && format != nullptr && format->value >= 1.0) {
        list.hasTemperatures = true;
        ++list.width;
        list.fields += " temperature";
    }
    return list;
}

const char* RowWord(const ErrorCollector& errors) {
    const RowKind* const kind = CurrentKind(errors);
    const auto& open = errors.OpenProperties();
    const bool ownTable = !open.empty() && open.back().nested;
    return kind == nullptr || ownTable ? "sample" : kind->word;
}

bool ExplainRowShape(Diagnostic& diagnostic, ErrorCollector& errors) {
    const RowList list = CurrentRows(errors);
    const PropertyRecord* const data = Data(errors);
    if (list.width == 0 || data == nullptr || !errors.TellRowShape()) return false;
    const InputPlace begun = errors.record.PlaceOf(data->place);
    if (begun.path != diagnostic.place.path) return false;
    const OddLine odd = FindOddLine(errors.Source(), begun, diagnostic.place.line, list.width);
    if (odd.numbers == 0) return false;
    AddNote(diagnostic,
            "This line has " + Counted(odd.numbers, "number") + "; a row is " + std::to_string(list.width) + ": " +
                list.fields + '.',
            odd.place, errors.Source().TokenAt(odd.place).size());
    const std::uint64_t other = list.hasTemperatures ? list.width - 1 : list.width + 1;
    if (list.mayHaveTemperatures && odd.first && odd.numbers == other) ProposeFormat(diagnostic, errors, list);
    return true;
}

bool ExplainForeignText(Diagnostic& diagnostic, ErrorCollector& errors) {
    const PropertyRecord* const data = Data(errors);
    if (data == nullptr) return false;
    if (!diagnostic.includedFrom.empty() && errors.record.PlaceOf(data->place).path != diagnostic.place.path) {
        AddNote(diagnostic, "No include stands among rows. Include the whole section instead.",
                diagnostic.includedFrom.front(), std::string_view("include").size());
        return true;
    }
    constexpr std::size_t reach = 2000;
    std::size_t at = 0;
    const std::string text(errors.Source().Around(diagnostic.place, reach, 1, at));
    const std::size_t sign = CommentBefore(std::string_view(text).substr(0, at));
    if (sign == std::string::npos) return false;
    InputPlace place = diagnostic.place;
    place.offset -= at - sign;
    place.line -= static_cast<std::uint64_t>(std::count(text.begin() + static_cast<std::ptrdiff_t>(sign),
                                                        text.begin() + static_cast<std::ptrdiff_t>(at), '\n'));
    const std::size_t lineFeed = text.rfind('\n', sign);
    if (lineFeed == std::string::npos) return false;
    place.column = sign - lineFeed;
    const std::size_t length = std::min(text.find_first_of("\r\n", sign), text.size()) - sign;
    AddNote(diagnostic, "No comment stands among rows. Put it before the section, or after the END of the rows.", place,
            length);
    diagnostic.fixes.push_back({place, length, ""});
    return true;
}

}  // namespace orvalo
