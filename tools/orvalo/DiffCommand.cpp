#include "DiffCommand.h"

#include <cstdio>
#include <memory>
#include <optional>
#include <string>

#include <CLI/App.hpp>
#include <CLI/Validators.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "CommonOptions.h"
#include "ExitStatus.h"
#include "FormatOption.h"
#include "HarmlessText.h"
#include "JsonText.h"
#include "compare/ComparisonReport.h"
#include "compare/Tolerance.h"

namespace {

using Json = nlohmann::ordered_json;

struct DiffOptions {
    std::string a;
    std::string b;
    Tolerance tolerance;
    OutputFormat format = OutputFormat::text;
    std::optional<FileKind> kind;
    bool quiet = false;
    unsigned threads = 0;
    ColourMode colour = ColourMode::automatic;
};

ExitStatus Tell(const DiffOptions& options, bool equal, const Json& document, const std::string& text) {
    if (options.format == OutputFormat::json) {
        Json whole = {{"a", options.a}, {"b", options.b}};
        whole.update(document);
        PrintJson(whole);
    } else if (!options.quiet) {
        fmt::print("{} and {} {}\n{}", Harmless(options.a), Harmless(options.b), equal ? "are equal" : "differ", text);
    }
    return equal ? ExitStatus::good : ExitStatus::badFile;
}

ExitStatus Diff(const DiffOptions& options) {
    const ReadSettings settings = {options.kind, false, false, options.threads};
    const InputFile a = ReadOrReport(options.a, settings, options.colour);
    const InputFile b = ReadOrReport(options.b, settings, options.colour);
    // Status 1 says that files differ, and nothing else.
    if (!a.Good() || !b.Good()) return ExitStatus::unreadableFile;
    if (a.checked.kind != b.checked.kind) {
        fmt::print(stderr, "orvalo: one of the files is a model and the other one holds results\n");
        return ExitStatus::wrongUsage;
    }
    if (a.model) {
        const ModelComparison comparison = Compare(*a.model, *b.model, options.tolerance);
        return Tell(options, comparison.Equal(), ToJson(comparison), ToText(comparison));
    }
    const ResultsTable tableA(*a.results);
    const ResultsTable tableB(*b.results);
    const ResultsComparison comparison = Compare(tableA, tableB, options.tolerance);
    return Tell(options, comparison.Equal(), ToJson(comparison, tableA, tableB), ToText(comparison, tableA, tableB));
}

}  // namespace

void AddDiffCommand(CLI::App& app, ExitStatus& status) {
    auto options = std::make_shared<DiffOptions>();
    CLI::App* command = app.add_subcommand("diff", "Say in what two models, or two files of results, differ");
    command->add_option("A", options->a, "A model or results")->required();
    command->add_option("B", options->b, "Another file of the same kind")->required();
    command->add_option("--abs", options->tolerance.absolute, "Numbers may differ by this much (0)")
        ->check(CLI::NonNegativeNumber)
        ->option_text("T");
    command->add_option("--rel", options->tolerance.relative, "Or by this part of the larger magnitude (0)")
        ->check(CLI::NonNegativeNumber)
        ->option_text("T");
    command->add_flag("--nan-differ", options->tolerance.nanDiffers, "What is no number differs from itself");
    command->add_flag("-q,--quiet", options->quiet, "Tell by the exit status alone");
    AddFormatOption(*command, options->format, {{"text", OutputFormat::text}, {"json", OutputFormat::json}},
                    "text (for people) or json (for scripts)");
    AddKindOption(*command, options->kind);
    AddThreadsOption(*command, options->threads);
    AddColourOption(*command, options->colour);
    command->footer(
        "Of models everything is compared, whatever the order of rows; of results the values of each cube, by the\n"
        "names of the columns where both files have names. The tolerances are for numbers that are not whole by\n"
        "nature. docs/results-tools.md describes the JSON.\n\n"
        "Exit status: 0 the files are equal within the tolerances; 1 they differ; 2 wrong usage; 3 one of them cannot\n"
        "be read or has errors.");
    command->callback([options, &status] { status = Diff(*options); });
}
