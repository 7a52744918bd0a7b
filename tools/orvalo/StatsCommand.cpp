#include "StatsCommand.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include <CLI/App.hpp>
#include <CLI/Validators.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "CommonOptions.h"
#include "ExitStatus.h"
#include "FormatOption.h"
#include "HarmlessText.h"
#include "JsonText.h"
#include "Parallel.h"
#include "ProgressBar.h"
#include "results/ColumnList.h"
#include "results/ColumnStatistics.h"
#include "results/ResultsTable.h"

namespace {

using Json = nlohmann::ordered_json;

struct StatsOptions {
    std::vector<std::string> names;
    std::vector<std::string> columns;
    std::vector<double> percents = {1, 5, 25, 50, 75, 95, 99};
    std::size_t bins = 10;
    OutputFormat format = OutputFormat::text;
    unsigned threads = 0;
    ColourMode colour = ColourMode::automatic;
};

std::vector<ColumnStatistics> DescribeAll(const std::string& name, const ResultsTable& table,
                                          const std::vector<unsigned int>& columns, const StatsOptions& options) {
    std::vector<ColumnStatistics> statistics(columns.size());
    std::atomic<std::size_t> done = 0;
    const ProgressBar bar(name, [&] { return ProgressBar::State{done, columns.size()}; });
    ForEachInParallel(columns.size(), options.threads, [&](std::size_t i) {
        statistics[i] = Describe(table.Source(), columns[i], options.percents, options.bins);
        ++done;
    });
    return statistics;
}

Json ToJson(const ColumnStatistics::Extreme& extreme, bool known, const ResultsTable& table) {
    Json entry = {{"value", extreme.value}, {"row", nullptr}};
    if (!known) return entry;
    entry["row"] = extreme.row;
    const orvalo::Point cell = table.HasCells() ? table.Cell(extreme.row) : orvalo::Point();
    if (table.HasCells()) entry["cube"] = {cell.x, cell.y, cell.z};
    return entry;
}

Json ToJson(const ColumnStatistics& statistics, unsigned int column, const ResultsTable& table,
            const std::vector<double>& percents) {
    const bool known = statistics.finite > 0;
    Json entry = {{"column", column},
                  {"name", table.Named() ? Json(table.Name(column)) : Json(nullptr)},
                  {"finite", statistics.finite},
                  {"notNumbers", statistics.notNumbers},
                  {"infinite", statistics.infinite},
                  {"min", ToJson(statistics.least, known, table)},
                  {"max", ToJson(statistics.greatest, known, table)},
                  {"mean", statistics.mean},
                  {"rms", statistics.rms},
                  {"standardDeviation", statistics.standardDeviation},
                  {"percentiles", Json::array()},
                  {"histogram", statistics.histogram}};
    for (std::size_t i = 0; i < percents.size(); ++i) {
        entry["percentiles"].push_back({{"percent", percents[i]}, {"value", statistics.percentiles[i]}});
    }
    return entry;
}

void PrintHistogram(const ColumnStatistics& statistics) {
    constexpr std::size_t barWidth = 40;
    const std::vector<std::size_t>& counts = statistics.histogram;
    const std::size_t max = *std::max_element(counts.begin(), counts.end());
    const double least = statistics.least.value;
    for (std::size_t i = 0; i < counts.size(); ++i) {
        const double part = static_cast<double>(i) / static_cast<double>(counts.size());
        // Rounded up, so that what is rare is seen.
        const std::size_t length = (counts[i] * barWidth + max - 1) / max;
        fmt::print("    from {:<13.6g} |{:<{}}| {}\n", least * (1 - part) + statistics.greatest.value * part,
                   std::string(length, '#'), barWidth, counts[i]);
    }
}

void Print(const ColumnStatistics& statistics, unsigned int column, const ResultsTable& table,
           const std::vector<double>& percents) {
    const std::string name = table.Named() ? " " + Harmless(table.Name(column)) : "";
    fmt::print("  column {}{}: {} finite, {} not a number, {} infinite\n", column, name, statistics.finite,
               statistics.notNumbers, statistics.infinite);
    if (statistics.finite == 0) return;
    fmt::print("    min {:<13.6g} at {}\n    max {:<13.6g} at {}\n", statistics.least.value,
               table.PlaceText(statistics.least.row), statistics.greatest.value,
               table.PlaceText(statistics.greatest.row));
    fmt::print("    mean {:.6g}, RMS {:.6g}, standard deviation {:.6g}\n", statistics.mean, statistics.rms,
               statistics.standardDeviation);
    std::vector<std::string> parts;
    parts.reserve(percents.size());
    for (std::size_t i = 0; i < percents.size(); ++i) {
        parts.push_back(fmt::format("{}% {:.6g}", percents[i], statistics.percentiles[i]));
    }
    if (!parts.empty()) fmt::print("    {}\n", fmt::join(parts, ", "));
    PrintHistogram(statistics);
}

ExitStatus Stats(StatsOptions& options) {
    std::sort(options.percents.begin(), options.percents.end());
    ExitStatus worst = ExitStatus::good;
    Json document = Json::array();
    for (const std::string& path : options.names) {
        const InputFile file = ReadOrReport(path, {FileKind::results, false, false, options.threads}, options.colour);
        worst = std::max(worst, file.Status());
        if (!file.Good()) continue;
        const ResultsTable table(*file.results);
        const std::string& name = file.checked.input.Name();
        const auto columns = SelectColumns(table, options.columns, name);
        if (!columns) {
            worst = std::max(worst, ExitStatus::badFile);
            continue;
        }
        const std::vector<ColumnStatistics> statistics = DescribeAll(name, table, *columns, options);
        Json list = Json::array();
        if (options.format == OutputFormat::text) fmt::print("{}: {} rows\n", Harmless(name), table.Rows());
        for (std::size_t i = 0; i < columns->size(); ++i) {
            if (options.format == OutputFormat::text) Print(statistics[i], (*columns)[i], table, options.percents);
            list.push_back(ToJson(statistics[i], (*columns)[i], table, options.percents));
        }
        document.push_back({{"path", name}, {"rows", table.Rows()}, {"columns", list}});
    }
    if (options.format == OutputFormat::json) PrintJson(document);
    return worst;
}

}  // namespace

void AddStatsCommand(CLI::App& app, ExitStatus& status) {
    auto options = std::make_shared<StatsOptions>();
    CLI::App* command = app.add_subcommand("stats", "Describe the value columns of results by statistics");
    command->add_option("RESULTS", options->names, "Results files; - reads standard input")->required();
    AddColumnsOption(*command, options->columns);
    command->add_option("--percentiles", options->percents, "Percentiles to tell, such as 5,50,95")
        ->delimiter(',')
        ->check(CLI::Range(0.0, 100.0))
        ->option_text("LIST");
    command->add_option("--bins", options->bins, "Parts of the histogram (10)")
        ->check(CLI::Range(1, 1000))
        ->option_text("N");
    AddFormatOption(*command, options->format, {{"text", OutputFormat::text}, {"json", OutputFormat::json}},
                    "text (for people) or json (for scripts)");
    AddThreadsOption(*command, options->threads);
    AddColourOption(*command, options->colour);
    command->footer(
        "All statistics are over the finite values; how many others there are is told. The standard deviation is\n"
        "that of the whole population. docs/results-tools.md describes the JSON.");
    command->callback([options, &status] { status = Stats(*options); });
}
