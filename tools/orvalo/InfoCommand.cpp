#include "InfoCommand.h"

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include <CLI/App.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "Diagnostic.h"
#include "ExitStatus.h"
#include "FormatOption.h"
#include "HarmlessText.h"
#include "InputFile.h"
#include "JsonText.h"
#include "ModelSummary.h"
#include "Problem.h"
#include "ResultsSummary.h"

namespace {

struct InfoOptions {
    std::vector<std::string> paths;
    OutputFormat format = OutputFormat::text;
    bool cubesOnly = false;
};

nlohmann::ordered_json ToJson(const InputFile& file, bool cubesOnly) {
    nlohmann::ordered_json entry;
    entry["path"] = file.path;
    entry["kind"] = file.kind == FileKind::model ? "model" : "results";
    entry["ok"] = file.Good();
    entry["problems"] = ProblemsToJson(file);
    entry["readSeconds"] = file.seconds;
    if (file.model) AddToJson(entry, *file.model, Summarize(*file.model, cubesOnly));
    if (file.results) AddToJson(entry, Summarize(*file.results));
    return entry;
}

void PrintSummary(const InputFile& file, bool cubesOnly) {
    std::string kind;
    std::string text;
    if (file.model) {
        kind = cubesOnly ? "cubes of a model" : "model";
        text = ToText(*file.model, Summarize(*file.model, cubesOnly));
    } else {
        const ResultsSummary summary = Summarize(*file.results);
        kind = summary.format == "mat" ? "MAT-file results" : "text results";
        text = ToText(summary);
    }
    for (const Problem& warning : file.problems) text += fmt::format("  {:<13}{}\n", "warning", warning.message);
    fmt::print("{}: {}, read in {:.1f} ms\n{}", Harmless(file.path), kind, file.seconds * 1e3, text);
}

ExitStatus Info(const InfoOptions& options) {
    ExitStatus worst = ExitStatus::good;
    auto document = nlohmann::ordered_json::array();
    bool first = true;
    for (const std::string& path : options.paths) {
        const InputFile file = ReadInputFile(path, options.cubesOnly);
        worst = std::max(worst, file.Status());
        if (options.format == OutputFormat::json) {
            document.push_back(ToJson(file, options.cubesOnly));
        } else if (file.Good()) {
            if (!first) fmt::print("\n");
            first = false;
            PrintSummary(file, options.cubesOnly);
        } else {
            PrintProblems(file);
        }
    }
    if (options.format == OutputFormat::json) PrintJson(document);
    return worst;
}

}  // namespace

void AddInfoCommand(CLI::App& app, ExitStatus& status) {
    auto options = std::make_shared<InfoOptions>();
    CLI::App* command = app.add_subcommand("info", "Print a summary of models and results");
    command->add_option("FILE", options->paths, "Model or results files, told apart by their content")->required();
    command->add_flag("--cubes-only", options->cubesOnly,
                      "Read only the grid of models: materials are then just the numbers of the file");
    AddFormatOption(*command, options->format);
    command->footer(
        "Lengths and wave speeds are in the units of the file, times in microseconds. Wave speeds of materials that\n"
        "depend on temperature are those at the model's room temperature. With --format=json the summaries form an\n"
        "array with an object for each file; a number that is not finite (nan, inf) becomes null.");
    command->callback([options, &status] { status = Info(*options); });
}
