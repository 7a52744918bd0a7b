#include "ExportCommand.h"

#include <array>
#include <charconv>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include <CLI/App.hpp>
#include <CLI/Error.hpp>
#include <CLI/Validators.hpp>
#include <fmt/format.h>

#include "CommonOptions.h"
#include "ExitStatus.h"
#include "FormatOption.h"
#include "HarmlessText.h"
#include "export/Export.h"
#include "export/RunExport.h"
#include "results/ColumnList.h"
#include "results/ResultsSelection.h"
#include "results/ResultsTable.h"

namespace {

struct ExportArguments {
    std::string name;
    std::string target;
    std::string pieces;
    std::vector<std::string> columns;
    ExportOptions options;
    std::optional<FileKind> kind;
    ColourMode colour = ColourMode::automatic;
};

/// Reads "N" or "NxMxK".
std::optional<std::vector<int>> ParsePieces(std::string_view text) {
    constexpr int max = 65536;
    std::vector<int> numbers;
    for (bool more = true; more;) {
        const std::size_t end = std::min(text.find('x'), text.size());
        int number = 0;
        const auto [stop, error] = std::from_chars(text.data(), text.data() + end, number);
        if (error != std::errc() || stop != text.data() + end || number < 1 || number > max) return std::nullopt;
        numbers.push_back(number);
        more = end < text.size();
        text.remove_prefix(more ? end + 1 : end);
    }
    long long product = 1;
    for (const int number : numbers) product *= number;
    return (numbers.size() == 1 || numbers.size() == 3) && product <= max ? std::optional(numbers) : std::nullopt;
}

void TakePieces(const ExportArguments& arguments, ExportOptions& options) {
    if (arguments.pieces.empty()) return;
    const std::vector<int> numbers = *ParsePieces(arguments.pieces);
    if (numbers.size() == 1) {
        options.pieceCount = numbers.front();
    } else {
        options.pieces = {numbers[0], numbers[1], numbers[2]};
    }
}

ExitStatus Run(const ExportArguments& arguments) {
    if (!arguments.pieces.empty() && !arguments.target.ends_with(".pvti")) {
        throw CLI::ValidationError("--pieces", "only a .pvti is written in pieces");
    }
    ExportOptions options = arguments.options;
    TakePieces(arguments, options);
    const InputFile file =
        ReadOrReport(arguments.name, {arguments.kind, false, false, options.threads}, arguments.colour);
    if (!file.Good()) return file.Status();
    if (const auto why = WhyNotExported(file.checked.kind, arguments.target)) {
        fmt::print(stderr, "{}\n", Harmless(*why));
        return ExitStatus::wrongUsage;
    }
    if (file.model) return RunExport(*file.model, arguments.target, options);
    const ResultsTable table(*file.results);
    const auto columns = SelectColumns(table, arguments.columns, file.checked.input.Name());
    if (!columns) return ExitStatus::badFile;
    return RunExport(ResultsSelection(table, *columns), arguments.target, options);
}

}  // namespace

void AddExportCommand(CLI::App& app, ExitStatus& status) {
    auto arguments = std::make_shared<ExportArguments>();
    ExportOptions& options = arguments->options;
    CLI::App* command = app.add_subcommand("export", "Write a model or results in the form of another program");
    command->add_option("FILE", arguments->name, "A model or results; - reads standard input")->required();
    command->add_option("OUT", arguments->target, "Where to write; its extension says in which form")->required();
    command->add_flag("--force", options.overwrite, "Replace OUT if it exists");
    command->add_flag("--compress", options.compress, "Compress the data of VTK files and .npz");
    command
        ->add_option("--pieces", arguments->pieces,
                     "Cut a .pvti into N pieces, or into N along x, M along y, K along z")
        ->check([](const std::string& text) {
            return ParsePieces(text) ? std::string() : "should be N or NxMxK, of at most 65536 pieces";
        })
        ->option_text("N|NxMxK");
    command->add_option("--cell-size", options.cellSize, "Edge of a cube of results, which do not tell it (1)")
        ->check(CLI::PositiveNumber)
        ->option_text("LENGTH");
    command->add_flag("--cubes", options.withCubes, "Write the rows of the grid into a .json too");
    AddColumnsOption(*command, arguments->columns);
    AddKindOption(*command, arguments->kind);
    AddThreadsOption(*command, options.threads);
    AddColourOption(*command, arguments->colour);
    command->footer(
        fmt::format("Models: {}\nResults: {}\n\n"
                    "The file is complete or not there: it is written under another name and then moved. "
                    "docs/export.md tells what\n"
                    "the files hold.",
                    ExportedExtensions(FileKind::model), ExportedExtensions(FileKind::results)));
    command->callback([arguments, &status] { status = Run(*arguments); });
}
