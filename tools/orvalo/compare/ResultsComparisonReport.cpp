#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "HarmlessText.h"
#include "SummaryLines.h"
#include "compare/ComparisonReport.h"

namespace {

using Json = nlohmann::ordered_json;

Json PlaceOf(const ResultsTable& table, unsigned int row) {
    if (!table.HasCells()) return {{"row", row}};
    const orvalo::Point cell = table.Cell(row);
    return {{"row", row}, {"cube", {cell.x, cell.y, cell.z}}};
}

Json ToJson(const std::optional<ResultsComparison::Extreme>& extreme, const ResultsTable& table) {
    if (!extreme) return nullptr;
    Json entry = {{"difference", extreme->distance}, {"a", extreme->a}, {"b", extreme->b}};
    entry.update(PlaceOf(table, extreme->rowA));
    return entry;
}

Json ToJson(const ResultsComparison::Lone& lone, const ResultsTable& table) {
    Json first = Json::array();
    for (const unsigned int row : lone.rows) first.push_back(PlaceOf(table, row));
    return {{"count", lone.count}, {"first", first}};
}

void AddLone(SummaryLines& lines, const char* title, const ResultsComparison::Lone& lone, const ResultsTable& table) {
    if (lone.count == 0) return;
    std::vector<std::string> places;
    for (const unsigned int row : lone.rows) places.push_back(table.PlaceText(row));
    lines.Add(title, fmt::format("{} {}: {}{}", lone.count, table.HasCells() ? "cubes" : "rows",
                                 fmt::join(places, ", "), lone.count > lone.rows.size() ? ", ..." : ""));
}

void AddNames(SummaryLines& lines, const char* title, const std::vector<std::string>& names) {
    if (!names.empty()) lines.Add(title, "columns " + Harmless(fmt::format("{}", fmt::join(names, ", "))));
}

std::string ExtremeText(const ResultsComparison::Extreme& extreme, const ResultsTable& table) {
    return fmt::format("{:<12.6g} at {}: {} and {}", extreme.distance, table.PlaceText(extreme.rowA), extreme.a,
                       extreme.b);
}

}  // namespace

Json ToJson(const ResultsComparison& comparison, const ResultsTable& a, const ResultsTable& b) {
    Json document = {{"equal", comparison.Equal()},
                     {"by", comparison.byCube ? "cube" : "row"},
                     {"common", comparison.common},
                     {"indicesDiffering", comparison.indicesDiffering},
                     {"onlyA", ToJson(comparison.onlyA, a)},
                     {"onlyB", ToJson(comparison.onlyB, b)},
                     {"columnsOnlyA", comparison.columnsOnlyA},
                     {"columnsOnlyB", comparison.columnsOnlyB},
                     {"coordinatesInOneOnly", comparison.coordinatesDiffer},
                     {"columns", Json::array()}};
    for (const ResultsComparison::Column& column : comparison.columns) {
        document["columns"].push_back({{"name", column.name},
                                       {"differing", column.differing},
                                       {"notFinite", column.notFinite},
                                       {"largestAbsolute", ToJson(column.absolute, a)},
                                       {"largestRelative", ToJson(column.relative, a)},
                                       {"rms", column.rms}});
    }
    return document;
}

std::string ToText(const ResultsComparison& comparison, const ResultsTable& a, const ResultsTable& b) {
    SummaryLines lines;
    lines.Add("compared", fmt::format("{} {}", comparison.common, comparison.byCube ? "cubes" : "rows"));
    if (comparison.coordinatesDiffer) lines.Add("coordinates", "only one of them has any");
    AddLone(lines, "only in A", comparison.onlyA, a);
    AddNames(lines, "only in A", comparison.columnsOnlyA);
    AddLone(lines, "only in B", comparison.onlyB, b);
    AddNames(lines, "only in B", comparison.columnsOnlyB);
    if (comparison.indicesDiffering > 0) {
        lines.Add("indices", fmt::format("{} rows differ after the coordinates", comparison.indicesDiffering));
    }
    for (const ResultsComparison::Column& column : comparison.columns) {
        const std::string notFinite =
            column.notFinite > 0 ? fmt::format(", {} of them not finite", column.notFinite) : "";
        lines.Add(Harmless(column.name),
                  fmt::format("{} differ{}, RMS of the differences {:.6g}", column.differing, notFinite, column.rms));
        if (column.absolute) lines.Add("", "largest absolute " + ExtremeText(*column.absolute, a));
        if (column.relative) lines.Add("", "largest relative " + ExtremeText(*column.relative, a));
    }
    return lines.Text();
}
