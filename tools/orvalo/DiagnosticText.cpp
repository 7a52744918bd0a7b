#include "DiagnosticText.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include <fmt/format.h>

#include "HarmlessText.h"
#include "SourceExcerpt.h"

namespace {

/// Writes one diagnostic.
class DiagnosticText {
public:
    DiagnosticText(const Input& input, const TextStyle& style) : input_(input), style_(style) {}

    std::string Write(const orvalo::Diagnostic& diagnostic) {
        const bool isError = diagnostic.severity == orvalo::Severity::Error;
        const std::string severity = isError ? style_.Error("error:") : style_.Warning("warning:");
        text_ =
            fmt::format("{} {} {} [{}]\n", Where(diagnostic.place), severity, style_.Bold(Shown(diagnostic.message)),
                        diagnostic.code > 0 ? std::to_string(diagnostic.code) : diagnostic.rule);
        AddExcerpt(diagnostic.place, diagnostic.length);
        fixes_ = diagnostic.fixes;
        AddFixesAt(diagnostic.place);
        for (const orvalo::Note& note : diagnostic.notes) AddNote(note, diagnostic.place);
        while (!fixes_.empty()) {
            const orvalo::InputPlace place = fixes_.front().place;
            AddNote(place, "this can be mended here");
            AddFixesAt(place);
        }
        if (diagnostic.row > 0) AddNote(diagnostic.place, fmt::format("in row {} of the data", diagnostic.row));
        for (const orvalo::InputPlace& place : diagnostic.includedFrom) AddNote(place, "included from here");
        return text_;
    }

private:
    std::string Shown(const std::string& message) const { return Harmless(input_.ShownMessage(message)); }

    std::string Where(const orvalo::InputPlace& place) const {
        if (place.path.empty()) return style_.Bold(Harmless(input_.Name()) + ":");
        return style_.Bold(fmt::format("{}:{}:{}:", Harmless(input_.Shown(place.path)), place.line, place.column));
    }

    void AddNote(const orvalo::InputPlace& place, const std::string& message) {
        text_ += fmt::format("{} {} {}\n", Where(place), style_.Note("note:"), Shown(message));
    }

    void AddLine(const std::string& gutter, const std::string& text) {
        const std::string line = fmt::format("{} | {}", gutter, text);
        text_ += line.substr(0, line.find_last_not_of(' ') + 1) + '\n';
    }

    // The gutter is as wide as the widest number in it.
    std::size_t GutterWidth(const orvalo::InputPlace& place) const {
        return std::max<std::size_t>(5, std::to_string(place.line).size());
    }

    std::size_t TextWidth(const orvalo::InputPlace& place) const {
        const std::size_t gutter = GutterWidth(place) + 3;
        return style_.Width() > gutter ? style_.Width() - gutter : 0;
    }

    void AddMark(const MarkedLine& line, std::size_t gutter, const std::string& mark) {
        if (!mark.empty()) AddLine(std::string(gutter, ' '), std::string(line.indent, ' ') + style_.Mark(mark));
    }

    void AddExcerpt(const orvalo::InputPlace& place, std::uint64_t length) {
        if (place.path.empty()) return;
        const auto line = ExcerptAt(place, length, TextWidth(place));
        if (!line) return;
        const std::size_t gutter = GutterWidth(place);
        AddLine(fmt::format("{:{}}", place.line, gutter), line->text);
        AddMark(*line, gutter, '^' + std::string(line->marked - 1, '~'));
    }

    void AddNote(const orvalo::Note& note, const orvalo::InputPlace& of) {
        AddNote(note.place.path.empty() ? of : note.place, note.message);
        const bool shown = note.place.path == of.path && note.place.offset == of.offset;
        if (!shown) AddExcerpt(note.place, note.length);
        AddFixesAt(note.place);
    }

    /// Those that mend the line which was just shown.
    void AddFixesAt(const orvalo::InputPlace& place) {
        const char* title = "fix";
        const auto here = [&](const orvalo::Fix& fix) {
            return fix.place.path == place.path && fix.place.line == place.line;
        };
        for (const orvalo::Fix& fix : fixes_) {
            if (!here(fix)) continue;
            AddFix(fix, title);
            title = "or";
        }
        std::erase_if(fixes_, here);
    }

    void AddFix(const orvalo::Fix& fix, const char* title) {
        const std::size_t gutter = GutterWidth(fix.place);
        for (const MarkedLine& line : MendedLines(fix, TextWidth(fix.place))) {
            const bool blank = line.text.find_first_not_of(' ') == std::string::npos;
            AddLine(fmt::format("{:>{}}", title, gutter), blank ? "(leave it out)" : line.text);
            if (!blank) AddMark(line, gutter, std::string(line.marked, fix.length == 0 ? '+' : '~'));
            title = "";
        }
    }

    const Input& input_;
    const TextStyle& style_;
    /// Of the diagnostic being written, those that are still to be shown.
    std::vector<orvalo::Fix> fixes_;
    std::string text_;
};

std::string Counted(std::size_t count, const char* noun) {
    return fmt::format("{} {}{}", count, noun, count == 1 ? "" : "s");
}

}  // namespace

void PrintDiagnostics(const Input& input, const std::vector<orvalo::Diagnostic>& diagnostics, const TextStyle& style) {
    std::string text;
    for (const orvalo::Diagnostic& diagnostic : diagnostics) text += DiagnosticText(input, style).Write(diagnostic);
    // What was printed about earlier files comes first, also where both streams end up in one place.
    std::fflush(stdout);
    fmt::print(stderr, "{}", text);
}

std::string CountsText(std::size_t errors, std::size_t warnings, std::size_t files) {
    std::string counts = errors > 0 || warnings == 0 ? Counted(errors, "error") : "";
    if (warnings > 0) counts += (counts.empty() ? "" : " and ") + Counted(warnings, "warning");
    return counts + " in " + Counted(files, "file");
}
