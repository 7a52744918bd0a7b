#include "InfoCommand.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <CLI/App.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <Orvalo3DReader/Check/Diagnostic.h>

#include "CommonOptions.h"
#include "DiagnosticJson.h"
#include "DiagnosticText.h"
#include "ExitStatus.h"
#include "FormatOption.h"
#include "HarmlessText.h"
#include "InputFile.h"
#include "JsonText.h"
#include "ModelSummary.h"
#include "ResultsSummary.h"
#include "TextStyle.h"

namespace {

struct InfoOptions {
    std::vector<std::string> names;
    OutputFormat format = OutputFormat::text;
    std::optional<FileKind> kind;
    ColourMode colour = ColourMode::automatic;
    bool cubesOnly = false;
    unsigned threads = 0;
    /// Shown in text and left out of JSON unless said otherwise.
    std::optional<bool> timing;
};

nlohmann::ordered_json ToJson(const InputFile& file, const InfoOptions& options) {
    nlohmann::ordered_json entry = ToJson(file.checked);
    if (options.timing.value_or(false)) entry["readSeconds"] = file.seconds;
    if (file.model) AddToJson(entry, *file.model, Summarize(*file.model, options.cubesOnly));
    if (file.results) AddToJson(entry, Summarize(*file.results));
    return entry;
}

void PrintSummary(const InputFile& file, const InfoOptions& options) {
    std::string head = Harmless(file.checked.input.Name());
    std::string text;
    if (file.model) {
        head += options.cubesOnly ? ": cubes of a model" : ": model";
        text = ToText(*file.model, Summarize(*file.model, options.cubesOnly));
    } else {
        const ResultsSummary summary = Summarize(*file.results);
        head += summary.format == "mat" ? ": MAT-file results" : ": text results";
        text = ToText(summary);
    }
    for (const orvalo::Diagnostic& warning : file.checked.diagnostics) {
        text += fmt::format("  {:<13}{}\n", "warning", Harmless(warning.message));
    }
    if (options.timing.value_or(true)) head += fmt::format(", read in {:.1f} ms", file.seconds * 1e3);
    fmt::print("{}\n{}", head, text);
}

ExitStatus Info(const InfoOptions& options) {
    ExitStatus worst = ExitStatus::good;
    auto document = nlohmann::ordered_json::array();
    const TextStyle style(stderr, options.colour);
    bool first = true;
    for (const std::string& name : options.names) {
        const InputFile file = ReadInputFile(name, {options.kind, options.cubesOnly, true, options.threads});
        worst = std::max(worst, file.Status());
        if (options.format == OutputFormat::json) {
            document.push_back(ToJson(file, options));
        } else if (file.Good()) {
            if (!first) fmt::print("\n");
            first = false;
            PrintSummary(file, options);
        } else {
            PrintDiagnostics(file.checked.input, file.checked.diagnostics, style);
        }
    }
    if (options.format == OutputFormat::json) PrintJson(document);
    return worst;
}

}  // namespace

void AddInfoCommand(CLI::App& app, ExitStatus& status) {
    auto options = std::make_shared<InfoOptions>();
    CLI::App* command = app.add_subcommand("info", "Print a summary of models and results");
    command
        ->add_option("FILE", options->names,
                     "Model or results files, told apart by their content; - reads standard input")
        ->required();
    command->add_flag("--cubes-only", options->cubesOnly,
                      "Read only the grid of models: materials are then just the numbers of the file");
    AddFormatOption(*command, options->format, {{"text", OutputFormat::text}, {"json", OutputFormat::json}},
                    "text (for people) or json (for scripts)");
    command->add_flag_callback(
        "--timing", [options] { options->timing = true; },
        "Tell how long reading took, as text does unless told not to");
    command->add_flag_callback(
        "--no-timing", [options] { options->timing = false; }, "Do not, as JSON does unless told to");
    AddThreadsOption(*command, options->threads);
    AddKindOption(*command, options->kind);
    AddColourOption(*command, options->colour);
    command->footer(
        "Lengths and wave speeds are in the units of the file, times in microseconds. Wave speeds of materials that\n"
        "depend on temperature are those at the model's room temperature. With --format=json the summaries form an\n"
        "array with an object for each file, described in docs/json.md; a number that is not finite becomes null.");
    command->callback([options, &status] { status = Info(*options); });
}
