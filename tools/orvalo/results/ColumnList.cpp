#include "ColumnList.h"

#include <cstdio>
#include <numeric>
#include <optional>
#include <string>
#include <vector>

#include <fmt/format.h>

#include "HarmlessText.h"
#include "NearestWord.h"

void AddColumnsOption(CLI::App& command, std::vector<std::string>& columns) {
    command
        .add_option("--columns", columns, "Value columns by name or by number, from 0, such as u,w; all if not given")
        ->delimiter(',')
        ->option_text("LIST");
}

std::optional<std::vector<unsigned int>> SelectColumns(const ResultsTable& table, const std::vector<std::string>& asked,
                                                       const std::string& fileName) {
    std::vector<unsigned int> columns(table.Columns());
    std::iota(columns.begin(), columns.end(), 0U);
    if (asked.empty()) return columns;
    std::vector<std::string> names;
    names.reserve(columns.size());
    for (const unsigned int column : columns) names.push_back(table.Name(column));
    columns.clear();
    for (const std::string& column : asked) {
        const auto found = table.Find(column);
        if (!found) {
            const std::string nearest = NearestWord(column, names);
            fmt::print(stderr, "{}: error: No value column is named '{}'.{}\n", Harmless(fileName), Harmless(column),
                       nearest.empty() ? "" : fmt::format(" Did you mean '{}'?", Harmless(nearest)));
            return std::nullopt;
        }
        columns.push_back(*found);
    }
    return columns;
}
