#include "Check/ResultsHeader.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "Check/Explanations.h"
#include "Check/ResultsFindings.h"
#include "Common/Bytes.h"
#include "Common/ParseNumber.h"

namespace orvalo {

namespace {

constexpr std::string_view mark = "\xEF\xBB\xBF";
constexpr std::string_view blanks = " \"'#%";

/// A name as it would be without what does not count: blanks, quotes and comment signs around it, capitals.
std::string Plain(std::string_view name) {
    name.remove_prefix(std::min(name.find_first_not_of(blanks), name.size()));
    name = name.substr(0, name.find_last_not_of(blanks) + 1);
    std::string plain(name);
    for (char& c : plain) c = ToLower(c);
    return plain;
}

bool IsIndexName(const std::string& name) {
    return std::find(indexNames.begin(), indexNames.end(), name) != indexNames.end();
}

bool BeginsWithIndices(const std::vector<std::string>& names) {
    return names.size() >= indexNames.size() &&
           std::equal(indexNames.begin(), indexNames.end(), names.begin(),
                      [](std::string_view wanted, const std::string& name) { return Plain(name) == wanted; });
}

bool IsNumber(const std::string& text) {
    // After the text stand bytes that end every number, as many as the conversion may look at.
    const std::string padded = text + std::string(16, '\0');
    double value = 0;
    const char* const end = padded.data() + text.size();
    return !text.empty() && ParseNumber(padded.data(), end, value) == end;
}

/// The columns with the index columns named as they must be.
MeantColumns Meant(std::vector<std::string> names, std::string why, std::size_t at, std::size_t length) {
    if (BeginsWithIndices(names)) std::copy(indexNames.begin(), indexNames.end(), names.begin());
    MeantColumns meant;
    const std::string line = JoinedNames(names);
    meant.columns = NamedColumns(line);
    // A file needs values besides its indices.
    if (meant.columns.values > 0) meant.line = line;
    meant.why = std::move(why);
    meant.at = at;
    meant.length = length;
    return meant;
}

/// The texts between separators of any kind.
std::vector<std::string> Fields(std::string_view line) {
    std::vector<std::string> fields;
    for (std::size_t at = 0; at < line.size();) {
        const std::size_t end = std::min(line.find_first_of(" ,;\t", at), line.size());
        const std::string_view field = line.substr(at, end - at);
        if (!Plain(field).empty()) fields.emplace_back(field);
        at = end + 1;
    }
    return fields;
}

/// Names between commas, semicolons or blanks.
std::optional<MeantColumns> Separated(std::string_view line) {
    constexpr std::string_view separators = " ,;";
    const std::size_t first = line.find_first_of(separators, line.find_first_not_of(separators));
    if (first == std::string_view::npos) return std::nullopt;
    const char separator = line.find(';') != line.npos ? ';' : line.find(',') != line.npos ? ',' : ' ';
    std::vector<std::string> names = Fields(line);
    if (names.size() < 2) return std::nullopt;
    const std::string how = separator == ' ' ? "blanks" : separator == ',' ? "commas" : "semicolons";
    return Meant(std::move(names), "The names are separated by " + how + "; write single tabs between them.",
                 line.find(separator), 1);
}

/// Two tabs in a row, or one at either end.
std::optional<MeantColumns> Unnamed(std::string_view line, std::vector<std::string> names) {
    std::size_t at = line.starts_with('\t') ? 0 : line.find("\t\t");
    if (at == std::string_view::npos && line.ends_with('\t')) at = line.size() - 1;
    if (at == std::string_view::npos) return std::nullopt;
    names.erase(std::remove(names.begin(), names.end(), ""), names.end());
    if (names.empty()) return std::nullopt;
    const char* const why = at + 1 == line.size()
                                ? "The line ends with a tab: after it begins one more column, without a name."
                                : "Every tab begins a column: here is one without a name.";
    return Meant(std::move(names), why, at, at + 1 == line.size() ? 1 : 2);
}

std::optional<MeantColumns> Misplaced(std::string_view line, const std::vector<std::string>& names) {
    std::vector<std::string> plain(names.size());
    std::transform(names.begin(), names.end(), plain.begin(), Plain);
    std::vector<std::string> known;
    std::copy_if(plain.begin(), plain.end(), std::back_inserter(known), IsIndexName);
    std::sort(known.begin(), known.end());
    known.erase(std::unique(known.begin(), known.end()), known.end());
    const bool coordinates = plain.size() > 2 && plain[0] == "x" && plain[1] == "y" && plain[2] == "z";
    MeantColumns meant;
    meant.columns = NamedColumns(line);
    meant.length = line.size();
    if (known.size() == indexNames.size()) {
        meant.why = "The columns of indices must come first, in the order x, y, z, f.";
    } else if (coordinates) {
        meant.why = "There are four columns of indices: after x, y and z must come f, such as a column of 0.";
    } else if (std::all_of(names.begin(), names.end(), IsNumber)) {
        meant.why = "The first line names the columns; this one holds numbers, which are not read as a row.";
    } else {
        return std::nullopt;
    }
    return meant;
}

}  // namespace

std::size_t CountFields(std::string_view line) {
    return Fields(line).size();
}

std::string JoinedNames(const std::vector<std::string>& names) {
    std::string line;
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (i > 0) line += '\t';
        line += names[i];
    }
    return line;
}

std::optional<MeantColumns> FindMeantColumns(std::string_view line) {
    const bool marked = line.starts_with(mark);
    const std::string_view text = line.substr(marked ? mark.size() : 0);
    const TextColumns written = NamedColumns(text);
    std::optional<MeantColumns> meant = Unnamed(text, written.names);
    // Blanks may belong to a name, unless what they separate are the names of indices, or there is nothing else.
    if (!meant && !BeginsWithIndices(written.names)) {
        meant = Separated(text);
        if (meant && meant->columns.indices == 0 && written.names.size() > 1) meant.reset();
    }
    if (!meant && written.indices == 0 && BeginsWithIndices(written.names)) {
        const std::vector<std::string> first(written.names.begin(), written.names.begin() + indexNames.size());
        meant = Meant(written.names, "The names of the indices must be exactly x, y, z and f, in small letters.", 0,
                      JoinedNames(first).size());
    }
    if (!meant && written.indices == 0) meant = Misplaced(text, written.names);
    if (!marked) return meant;
    if (!meant) meant = Meant(written.names, "", 0, 0);
    meant->why =
        "The file begins with a byte order mark (BOM), which becomes part of the first name: save it as UTF-8 "
        "without one.";
    meant->at = 0;
    meant->length = mark.size();
    return meant;
}

void WarnOfHeader(ResultsFindings& findings, std::string_view line) {
    const std::optional<MeantColumns> meant = FindMeantColumns(line);
    if (!meant || NamedColumns(line).indices > 0) return;
    if (meant->columns.indices == 0 && meant->line && !line.starts_with(mark)) return;
    Diagnostic& warning = findings.AddWarning(
        "near-miss-header", "The first line names no columns of indices: all columns are read as values.");
    warning.place = findings.PlaceAt(TextPlace{}, meant->at);
    warning.length = meant->length;
    AddNote(warning, meant->why);
    if (meant->line) warning.fixes.push_back({findings.PlaceAt(TextPlace{}), line.size(), *meant->line});
}

}  // namespace orvalo
