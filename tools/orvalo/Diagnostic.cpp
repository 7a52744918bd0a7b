#include "Diagnostic.h"

#include <cstdio>
#include <string>

#include <fmt/color.h>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "HarmlessText.h"
#include "InputFile.h"
#include "Problem.h"
#include "SourceExcerpt.h"
#include "Terminal.h"

namespace {

/// The colours that compilers use; plain text where colour is not welcome.
class Painter {
public:
    explicit Painter(bool colour) : colour_(colour) {}

    std::string Bold(const std::string& text) const { return Paint(fmt::emphasis::bold, text); }
    std::string Error(const std::string& text) const { return Paint(Strong(fmt::terminal_color::red), text); }
    std::string Warning(const std::string& text) const { return Paint(Strong(fmt::terminal_color::magenta), text); }
    std::string Note(const std::string& text) const { return Paint(Strong(fmt::terminal_color::cyan), text); }
    std::string Caret(const std::string& text) const { return Paint(Strong(fmt::terminal_color::green), text); }

private:
    static fmt::text_style Strong(fmt::terminal_color colour) { return fmt::emphasis::bold | fmt::fg(colour); }
    std::string Paint(const fmt::text_style& style, const std::string& text) const {
        return colour_ ? fmt::format(style, "{}", text) : text;
    }

    bool colour_;
};

std::string ExcerptLines(const Problem& problem, const Painter& paint) {
    const auto excerpt = ExcerptAt(problem.place);
    if (!excerpt) return {};
    const std::string indent(excerpt->indent, ' ');
    return fmt::format("{:5} | {}\n      | {}{}\n", problem.place.line, excerpt->text, indent, paint.Caret("^"));
}

std::string ProblemText(const std::string& path, const Problem& problem, const Painter& paint) {
    if (problem.severity == Problem::Severity::warning) {
        return fmt::format("{} {} {}\n", paint.Bold(Harmless(path) + ":"), paint.Warning("warning:"),
                           Harmless(problem.message));
    }
    const bool placed = problem.place.Known();
    std::string where = Harmless(placed ? problem.shownPath : path) + ":";
    if (placed) where += fmt::format("{}:{}:", problem.place.line, problem.place.column);
    std::string text = fmt::format("{} {} {} [{}]\n", paint.Bold(where), paint.Error("error:"),
                                   paint.Bold(Harmless(problem.message)), problem.code);
    if (placed) text += ExcerptLines(problem, paint);
    if (problem.row > 0) {
        text += fmt::format("{} {} in row {} of the data\n", paint.Bold(where), paint.Note("note:"), problem.row);
    }
    return text;
}

}  // namespace

void PrintProblems(const InputFile& file) {
    const Painter paint(WantsColour(stderr));
    std::string text;
    for (const Problem& problem : file.problems) text += ProblemText(file.path, problem, paint);
    // What was printed about earlier files comes first, also where both streams end up in one place.
    std::fflush(stdout);
    fmt::print(stderr, "{}", text);
}

nlohmann::ordered_json ProblemsToJson(const InputFile& file) {
    auto list = nlohmann::ordered_json::array();
    for (const Problem& problem : file.problems) {
        const bool isError = problem.severity == Problem::Severity::error;
        nlohmann::ordered_json entry;
        entry["severity"] = isError ? "error" : "warning";
        entry["code"] = isError ? nlohmann::ordered_json(problem.code) : nullptr;
        entry["message"] = problem.message;
        for (const char* key : {"path", "line", "column", "offset", "row"}) entry[key] = nullptr;
        if (problem.place.Known()) {
            entry["path"] = problem.shownPath;
            entry["line"] = problem.place.line;
            entry["column"] = problem.place.column;
            entry["offset"] = problem.place.offset;
        }
        if (problem.row > 0) entry["row"] = problem.row;
        list.push_back(entry);
    }
    return list;
}
