#include <algorithm>
#include <string>
#include <string_view>

#include "Check/ErrorCollector.h"
#include "Check/Explanations.h"
#include "Common/EditDistance.h"
#include "Common/Platform.h"

// Files that cannot be opened or read, and includes.

namespace orvalo {

namespace {

std::string Folded(std::string text) {
    for (char& c : text) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c == '\\' ? '/' : c;
    return text;
}

std::string NameOf(const std::string& path) {
    return path.substr(path.find_last_of(platform::separators) + 1);
}

std::string DirectoryOf(const std::string& path) {
    const std::size_t separator = path.find_last_of(platform::separators);
    if (separator == std::string::npos) return ".";
    return separator == 0 ? "/" : path.substr(0, separator);
}

}  // namespace

void TellSimilar(Diagnostic& diagnostic, const std::string& path, bool included) {
    const std::string name = NameOf(path);
    std::string nearest;
    std::size_t least = 3;
    for (const std::string& other : platform::FilesIn(DirectoryOf(path))) {
        // A link that leads nowhere.
        if (other == name) continue;
        if (Folded(other) == Folded(name)) {
            AddNote(diagnostic, "There is a file '" + other + "' there." +
                                    (included ? " Names in a model are read in lower case: rename it to '" + name + "'."
                                              : std::string()));
            return;
        }
        const std::size_t distance = EditDistance(Folded(other), name);
        if (distance >= least) continue;
        least = distance;
        nearest = other;
    }
    if (nearest.empty()) return;
    AddNote(diagnostic, "Did you mean '" + nearest + "'?");
    if (included && Folded(nearest) == nearest) AddFix(diagnostic, '"' + nearest + '"');
}

void ExplainFile(Diagnostic& diagnostic, ErrorCollector& errors) {
    if (errors.record.files.empty()) return;
    const ReadingRecord::File& file = errors.record.files.back();
    const bool included = file.parent >= 0;
    const std::string reason = platform::WhyUnreadable(file.path);
    if (!reason.empty()) AddNote(diagnostic, "The system says: " + reason + '.');
    if (!included) return TellSimilar(diagnostic, file.path, false);
    AddNote(diagnostic, file.path.find_first_of(platform::separators) == std::string::npos
                            ? "A name of one character is looked for in the current directory of the program."
                            : "It was looked for in the directory of the main file: " + DirectoryOf(file.path) + '.');
    if (platform::LookFor(file.path) == platform::Presence::NotThere) TellSimilar(diagnostic, file.path, true);
}

void ExplainIncludeName(Diagnostic& diagnostic, ErrorCollector& errors) {
    const Token& token = errors.Core().token;
    if (token.type == TokenType::Equals) {
        AddNote(diagnostic, "No '=' stands after 'include'.");
        return AddFix(diagnostic, " ");
    }
    if (token.type == TokenType::Keyword && !errors.Core().AtSection() && QuoteName(diagnostic, errors)) return;
    AddNote(diagnostic, "After 'include' stands the name of a file in double quotes.");
}

void ExplainSecondInclude(Diagnostic& diagnostic, ErrorCollector& errors) {
    const std::string name = '/' + Folded(errors.Core().token.text);
    for (const ReadingRecord::File& file : errors.record.files) {
        const std::string path = '/' + Folded(file.path);
        if (path.size() < name.size() || path.substr(path.size() - name.size()) != name) continue;
        if (file.parent < 0) return AddNote(diagnostic, "This is the main file: it cannot be included.");
        const InputPlace first = errors.record.PlaceOf({file.parent, file.includedAt});
        return AddNote(diagnostic, "A file is included once at most. This one was included here.", first,
                       errors.Source().TokenAt(first).size());
    }
}

void ExplainPath(Diagnostic& diagnostic, ErrorCollector&) {
    AddNote(diagnostic, "The absolute path of the main file may have 259 bytes at most.");
}

}  // namespace orvalo
