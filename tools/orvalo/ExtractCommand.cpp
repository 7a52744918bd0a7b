#include "ExtractCommand.h"

#include <atomic>
#include <charconv>
#include <cstddef>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include <CLI/App.hpp>
#include <fmt/format.h>

#include "CommonOptions.h"
#include "ExitStatus.h"
#include "HarmlessText.h"
#include "export/Export.h"
#include "export/RunExport.h"
#include "export/TextRows.h"
#include "results/CellList.h"
#include "results/ColumnList.h"
#include "results/ResultsSelection.h"
#include "results/ResultsTable.h"

namespace {

struct ExtractArguments {
    std::string name;
    std::string target;
    std::string box;
    std::string cubes;
    std::string set;
    std::vector<std::string> columns;
    bool csv = false;
    ExportOptions options;
    ColourMode colour = ColourMode::automatic;
};

ExitStatus Refuse(const std::string& message) {
    fmt::print(stderr, "{}\n", Harmless(message));
    return ExitStatus::badFile;
}

/// The cells of a set, given as MODEL:ID.
ExitStatus TakeSet(const ExtractArguments& arguments, std::vector<orvalo::Point>& cells) {
    const std::size_t colon = arguments.set.rfind(':');
    const std::string name = arguments.set.substr(0, colon);
    const std::string_view number = std::string_view(arguments.set).substr(colon + 1);
    int id = 0;
    std::from_chars(number.data(), number.data() + number.size(), id);
    const InputFile file =
        ReadOrReport(name, {FileKind::model, false, false, arguments.options.threads}, arguments.colour);
    if (!file.Good()) return file.Status();
    const auto set = file.model->sets.find(id);
    if (set == file.model->sets.end()) return Refuse(fmt::format("{}: error: There is no SET {}.", name, number));
    cells.assign(set->second->begin(), set->second->end());
    return ExitStatus::good;
}

ExitStatus TakeCells(const ExtractArguments& arguments, std::vector<orvalo::Point>& cells) {
    if (!arguments.set.empty()) return TakeSet(arguments, cells);
    const Input list(arguments.cubes);
    cells = ReadCells(list.Path(), list.Name());
    return ExitStatus::good;
}

ExitStatus Write(const ResultsSelection& selection, const ExtractArguments& arguments) {
    if (!arguments.target.empty()) return RunExport(selection, arguments.target, arguments.options);
    std::atomic<std::uint64_t> done = 0;
    WriteTextRows(
        selection, arguments.csv ? TextForm::csv : TextForm::results,
        [](std::string_view text) { fmt::print("{}", text); }, done);
    return ExitStatus::good;
}

ExitStatus Extract(const ExtractArguments& arguments, const InputFile& file) {
    const ResultsTable table(*file.results);
    const std::string& name = file.checked.input.Name();
    const auto columns = SelectColumns(table, arguments.columns, name);
    if (!columns) return ExitStatus::badFile;
    const bool byCube = !arguments.box.empty() || !arguments.cubes.empty() || !arguments.set.empty();
    if (byCube && !table.HasCells()) return Refuse(name + ": error: The results have no coordinates.");
    if (!byCube) return Write(ResultsSelection(table, *columns), arguments);
    if (!arguments.box.empty()) {
        return Write(ResultsSelection(table, *columns, RowsIn(table, ParseCellBox(arguments.box))), arguments);
    }
    std::vector<orvalo::Point> cells;
    const ExitStatus taken = TakeCells(arguments, cells);
    if (taken != ExitStatus::good) return taken;
    const FoundRows found = RowsOf(table, cells);
    const ExitStatus written = Write(ResultsSelection(table, *columns, found.rows), arguments);
    if (written != ExitStatus::good || found.missing.empty()) return written;
    const orvalo::Point& first = found.missing.front();
    return Refuse(fmt::format("{}: error: {} of {} cubes have no row, such as ({}, {}, {}).", name,
                              found.missing.size(), cells.size(), first.x, first.y, first.z));
}

ExitStatus Run(const ExtractArguments& arguments) {
    const auto why = arguments.target.empty() ? std::nullopt : WhyNotExported(FileKind::results, arguments.target);
    if (why) {
        fmt::print(stderr, "{}\n", Harmless(*why));
        return ExitStatus::wrongUsage;
    }
    const InputFile file =
        ReadOrReport(arguments.name, {FileKind::results, false, false, arguments.options.threads}, arguments.colour);
    if (!file.Good()) return file.Status();
    try {
        return Extract(arguments, file);
    } catch (const CellListError& error) {
        return Refuse(error.what());
    }
}

std::string RefuseSet(const std::string& text) {
    const std::size_t colon = text.rfind(':');
    const bool right = colon != std::string::npos && colon > 0 && colon + 1 < text.size() &&
                       text.find_first_not_of("0123456789", colon + 1) == std::string::npos;
    return right ? "" : "should be MODEL:ID, a model and the ID of a SET in it";
}

std::string RefuseBox(const std::string& text) {
    try {
        ParseCellBox(text);
        return "";
    } catch (const CellListError& error) {
        return error.what();
    }
}

}  // namespace

void AddExtractCommand(CLI::App& app, ExitStatus& status) {
    auto arguments = std::make_shared<ExtractArguments>();
    CLI::App* command = app.add_subcommand("extract", "Take some rows and columns out of results");
    command->add_option("RESULTS", arguments->name, "A results file; - reads standard input")->required();
    CLI::Option_group* cells = command->add_option_group("cells");
    cells
        ->add_option("--box", arguments->box, "Cubes of a box, bounds included, such as 1:20,5,:9; in the file's order")
        ->check(RefuseBox)
        ->option_text("X0:X1,Y0:Y1,Z0:Z1");
    cells->add_option("--cubes", arguments->cubes, "Cubes listed in a file, x y z on each line; in the list's order")
        ->option_text("FILE");
    cells->add_option("--set", arguments->set, "Cubes of a SET of a model; in the set's order")
        ->check(RefuseSet)
        ->option_text("MODEL:ID");
    cells->require_option(0, 1);
    AddColumnsOption(*command, arguments->columns);
    command->add_flag("--csv", arguments->csv, "Write CSV, with negative coordinates as they are");
    command->add_option("-o,--output", arguments->target, "Write a file, in the form that its extension says")
        ->option_text("OUT");
    command->add_flag("--force", arguments->options.overwrite, "Replace OUT if it exists");
    command->add_flag("--compress", arguments->options.compress, "Compress the data of VTK files and .npz");
    command->add_option("--cell-size", arguments->options.cellSize, "Edge of a cube, for VTK files (1)")
        ->check(CLI::PositiveNumber)
        ->option_text("LENGTH");
    AddThreadsOption(*command, arguments->options.threads);
    AddColourOption(*command, arguments->colour);
    command->footer(fmt::format(
        "Without --box, --cubes or --set all rows are taken. The rows go to standard output as text of results, which\n"
        "every command reads. OUT may be {}.\n\n"
        "Exit status: 1 also if a cube of --cubes or --set has no row; the others are written all the same.",
        ExportedExtensions(FileKind::results)));
    command->callback([arguments, &status] { status = Run(*arguments); });
}
