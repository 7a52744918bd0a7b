#include "ResultsSummary.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <Orvalo3DReader/Results/Results.h>
#include <Orvalo3DReader/Results/ResultsTxt.h>

#include "HarmlessText.h"
#include "SummaryLines.h"

namespace {

constexpr std::array<const char*, 3> axisNames = {"x", "y", "z"};

std::vector<std::string> AllNames(const orvalo::Results& results) {
    const auto* text = dynamic_cast<const orvalo::ResultsTxt*>(&results);
    return text == nullptr ? std::vector<std::string>() : text->ColumnNames();
}

ResultsSummary::Column SummarizeColumn(const orvalo::Results& results, unsigned int col) {
    ResultsSummary::Column column;
    column.least = std::numeric_limits<double>::infinity();
    column.greatest = -column.least;
    long double sum = 0.0L;
    const unsigned int rows = results.RowCount();
    for (unsigned int row = 0; row < rows; ++row) {
        const double value = results.ValueGet(col, row);
        if (std::isnan(value)) {
            ++column.notNumbers;
            continue;
        }
        column.least = std::min(column.least, value);
        column.greatest = std::max(column.greatest, value);
        sum += value;
    }
    const std::size_t numbers = rows - column.notNumbers;
    constexpr double none = std::numeric_limits<double>::quiet_NaN();
    if (numbers == 0) column.least = column.greatest = none;
    column.mean = numbers == 0 ? none : static_cast<double>(sum / static_cast<long double>(numbers));
    return column;
}

using Key = std::uint64_t;

constexpr int coordinateBits = 16;

Key CoordinateBits(int coordinate) {
    return static_cast<Key>(coordinate + (1 << (coordinateBits - 1)));
}

/// Counts distinct cells. Rows mostly come in the order of their cells, by one axis or the other: then it is enough
/// that none is twice in a row.
class CellCounter {
public:
    CellCounter(const orvalo::Results& results, const ResultsSummary::Box& box) : results_(results), box_(box) {}

    std::uint64_t Count() const {
        const unsigned int rows = results_.RowCount();
        if (Ascending({0, 1, 2}) || Ascending({2, 1, 0})) return rows;
        constexpr std::uint64_t mostBitsPerRow = 64;
        return box_.cells <= mostBitsPerRow * rows ? CountByBits() : CountBySorting();
    }

private:
    Key KeyOf(unsigned int row, const std::array<unsigned int, 3>& axes) const {
        Key key = 0;
        for (const unsigned int axis : axes)
            key = (key << coordinateBits) | CoordinateBits(results_.IndexGet(axis, row));
        return key;
    }

    bool Ascending(const std::array<unsigned int, 3>& axes) const {
        Key last = KeyOf(0, axes);
        for (unsigned int row = 1; row < results_.RowCount(); ++row) {
            const Key key = KeyOf(row, axes);
            if (key <= last) return false;
            last = key;
        }
        return true;
    }

    std::uint64_t CountByBits() const {
        std::vector<bool> taken(box_.cells);
        std::uint64_t count = 0;
        for (unsigned int row = 0; row < results_.RowCount(); ++row) {
            std::size_t cell = 0;
            for (unsigned int axis = 0; axis < axisNames.size(); ++axis) {
                const auto [first, last] = box_.axes[axis];
                cell = cell * static_cast<std::size_t>(last - first + 1) +
                       static_cast<std::size_t>(results_.IndexGet(axis, row) - first);
            }
            if (taken[cell]) continue;
            taken[cell] = true;
            ++count;
        }
        return count;
    }

    std::uint64_t CountBySorting() const {
        std::vector<Key> keys(results_.RowCount());
        for (unsigned int row = 0; row < keys.size(); ++row) keys[row] = KeyOf(row, {0, 1, 2});
        std::sort(keys.begin(), keys.end());
        return static_cast<std::uint64_t>(std::unique(keys.begin(), keys.end()) - keys.begin());
    }

    const orvalo::Results& results_;
    const ResultsSummary::Box& box_;
};

std::optional<ResultsSummary::Box> FindBox(const orvalo::Results& results) {
    const unsigned int rows = results.RowCount();
    if (rows == 0 || results.IndicesColCount() < axisNames.size()) return std::nullopt;
    ResultsSummary::Box box;
    box.cells = 1;
    for (unsigned int axis = 0; axis < axisNames.size(); ++axis) {
        int first = results.IndexGet(axis, 0);
        int last = first;
        for (unsigned int row = 1; row < rows; ++row) {
            const int coordinate = results.IndexGet(axis, row);
            first = std::min(first, coordinate);
            last = std::max(last, coordinate);
        }
        box.axes[axis] = {first, last};
        box.cells *= static_cast<std::uint64_t>(last - first) + 1;
    }
    box.covered = CellCounter(results, box).Count();
    return box;
}

double Fill(const ResultsSummary::Box& box) {
    return static_cast<double>(box.covered) / static_cast<double>(box.cells);
}

}  // namespace

std::vector<std::string> ValueColumnNames(const orvalo::Results& results) {
    std::vector<std::string> names = AllNames(results);
    const std::size_t indexColumns = std::min<std::size_t>(results.IndicesColCount(), names.size());
    names.erase(names.begin(), names.begin() + static_cast<std::ptrdiff_t>(indexColumns));
    return names;
}

ResultsSummary Summarize(const orvalo::Results& results) {
    ResultsSummary summary;
    summary.format = dynamic_cast<const orvalo::ResultsTxt*>(&results) != nullptr ? "text" : "mat";
    summary.rows = results.RowCount();
    summary.indexColumns = results.IndicesColCount();
    summary.indexNames = AllNames(results);
    summary.indexNames.resize(std::min(summary.indexColumns, summary.indexNames.size()));
    const std::vector<std::string> names = ValueColumnNames(results);
    for (unsigned int col = 0; col < results.ValuesColCount(); ++col) {
        summary.columns.push_back(SummarizeColumn(results, col));
        if (col < names.size()) summary.columns.back().name = names[col];
    }
    summary.box = FindBox(results);
    return summary;
}

void AddToJson(nlohmann::ordered_json& document, const ResultsSummary& summary) {
    using Json = nlohmann::ordered_json;
    document["format"] = summary.format;
    document["rows"] = summary.rows;
    document["indexColumns"] = summary.indexColumns;
    document["indexNames"] = summary.indexNames;
    document["columns"] = Json::array();
    for (const ResultsSummary::Column& column : summary.columns) {
        Json entry;
        entry["name"] = column.name.empty() ? Json(nullptr) : Json(column.name);
        entry["min"] = column.least;
        entry["max"] = column.greatest;
        entry["mean"] = column.mean;
        entry["notNumbers"] = column.notNumbers;
        document["columns"].push_back(entry);
    }
    Json& box = document["box"];
    if (!summary.box) return;
    for (std::size_t i = 0; i < axisNames.size(); ++i) {
        box[axisNames[i]] = {{"min", summary.box->axes[i].first}, {"max", summary.box->axes[i].last}};
    }
    box["cells"] = summary.box->cells;
    box["covered"] = summary.box->covered;
    box["fill"] = Fill(*summary.box);
}

std::string ToText(const ResultsSummary& summary) {
    SummaryLines lines;
    lines.Add("rows", fmt::format("{}", summary.rows));
    std::string columns = fmt::format("{} index, {} value", summary.indexColumns, summary.columns.size());
    if (!summary.indexNames.empty())
        columns += fmt::format(" (index: {})", Harmless(fmt::format("{}", fmt::join(summary.indexNames, " "))));
    lines.Add("columns", columns);
    if (summary.box) {
        const auto& [x, y, z] = summary.box->axes;
        lines.Add("coordinates",
                  fmt::format("x {}..{}, y {}..{}, z {}..{}", x.first, x.last, y.first, y.last, z.first, z.last));
        lines.Add("", fmt::format("{} of {} cubes of the box have a value ({:.4g}%)", summary.box->covered,
                                  summary.box->cells, 100 * Fill(*summary.box)));
    }
    std::vector<std::string> texts;
    for (std::size_t i = 0; i < summary.columns.size(); ++i) {
        const ResultsSummary::Column& column = summary.columns[i];
        texts.push_back(fmt::format("{:<3}{:<12} min {:<13.6g} max {:<13.6g} mean {:.6g}", i, Harmless(column.name),
                                    column.least, column.greatest, column.mean));
        if (column.notNumbers > 0) texts.back() += fmt::format("  ({} not a number)", column.notNumbers);
    }
    lines.AddList("values", texts, 100);
    return lines.Text();
}
