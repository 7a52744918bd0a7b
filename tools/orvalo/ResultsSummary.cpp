#include "ResultsSummary.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <future>
#include <limits>
#include <numeric>
#include <optional>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <Orvalo3DReader/Results/Results.h>
#include <Orvalo3DReader/Results/ResultsTxt.h>

#include "ColumnEntries.h"
#include "HarmlessText.h"
#include "SummaryLines.h"

namespace {

constexpr std::array<const char*, 3> axisNames = {"x", "y", "z"};

std::vector<std::string> AllNames(const orvalo::Results& results) {
    const auto* text = dynamic_cast<const orvalo::ResultsTxt*>(&results);
    return text == nullptr ? std::vector<std::string>() : text->ColumnNames();
}

/// Calls `work` with the number of rows of each block.
template <typename Work>
void ForEachBlock(const orvalo::Results& results, const Work& work) {
    for (std::size_t left = results.RowCount(), count = 0; left > 0; left -= count) {
        count = std::min(ColumnEntries<double>::blockRows, left);
        work(count);
    }
}

/// Least, greatest and sum of some values that are numbers.
struct Extent {
    static constexpr double infinity = std::numeric_limits<double>::infinity();

    void Take(double value) {
        const bool number = value == value;
        least = value < least ? value : least;
        greatest = value > greatest ? value : greatest;
        sum += number ? value : 0.0;
        numbers += number ? 1 : 0;
    }

    double least = infinity;
    double greatest = -infinity;
    double sum = 0.0;
    std::size_t numbers = 0;
};

ResultsSummary::Column SummarizeColumn(const orvalo::Results& results, unsigned int col) {
    ColumnEntries<double> entries(ValueRuns(results, col));
    ResultsSummary::Column column;
    column.least = Extent::infinity;
    column.greatest = -Extent::infinity;
    long double sum = 0.0L;
    std::size_t numbers = 0;
    ForEachBlock(results, [&](std::size_t count) {
        const double* const values = entries.Next(count);
        // Several at once, for each waits for the one before.
        std::array<Extent, 4> lanes;
        for (std::size_t i = 0; i < count; ++i) lanes[i % lanes.size()].Take(values[i]);
        for (const Extent& lane : lanes) {
            column.least = std::min(column.least, lane.least);
            column.greatest = std::max(column.greatest, lane.greatest);
            sum += lane.sum;
            numbers += lane.numbers;
        }
    });
    column.notNumbers = results.RowCount() - numbers;
    constexpr double none = std::numeric_limits<double>::quiet_NaN();
    if (numbers == 0) column.least = column.greatest = none;
    column.mean = numbers == 0 ? none : static_cast<double>(sum / static_cast<long double>(numbers));
    return column;
}

using Key = std::uint64_t;

constexpr int coordinateBits = 16;

Key CoordinateBits(int coordinate) {
    const int shifted = coordinate + (1 << (coordinateBits - 1));
    return static_cast<Key>(shifted);
}

Key KeyOf(int first, int second, int third) {
    return (CoordinateBits(first) << (2 * coordinateBits)) | (CoordinateBits(second) << coordinateBits) |
           CoordinateBits(third);
}

/// The coordinates of all rows, a block at a time.
class Coordinates {
public:
    using Block = std::array<const short*, 3>;

    explicit Coordinates(const orvalo::Results& results)
        : axes_{ColumnEntries(IndexRuns(results, 0)), ColumnEntries(IndexRuns(results, 1)),
                ColumnEntries(IndexRuns(results, 2))} {}

    Block Next(std::size_t count) { return {axes_[0].Next(count), axes_[1].Next(count), axes_[2].Next(count)}; }

private:
    std::array<ColumnEntries<short>, 3> axes_;
};

/// Whether every row has a greater cell than the one before, of which the axes count in some order: then no cell is
/// there twice.
class Ascent {
public:
    Ascent(std::size_t first, std::size_t second, std::size_t third) : first_(first), second_(second), third_(third) {}

    void Take(const Coordinates::Block& block, std::size_t count) {
        for (std::size_t i = 0; holds_ && i < count; ++i) {
            const Key key = KeyOf(block[first_][i], block[second_][i], block[third_][i]);
            holds_ = key >= least_;
            least_ = key + 1;
        }
    }
    bool Holds() const { return holds_; }

private:
    std::size_t first_;
    std::size_t second_;
    std::size_t third_;
    Key least_ = 0;
    bool holds_ = true;
};

/// What one pass over the coordinates of all rows tells.
struct CoordinateScan {
    std::array<ResultsSummary::Axis, 3> axes;
    /// Whether the rows are in order, by x, y, z or by z, y, x.
    bool ascending = false;
};

CoordinateScan Scan(const orvalo::Results& results) {
    CoordinateScan scan;
    scan.axes.fill({std::numeric_limits<int>::max(), std::numeric_limits<int>::min()});
    Ascent byX(0, 1, 2);
    Ascent byZ(2, 1, 0);
    Coordinates coordinates(results);
    ForEachBlock(results, [&](std::size_t count) {
        const Coordinates::Block block = coordinates.Next(count);
        for (std::size_t axis = 0; axis < scan.axes.size(); ++axis) {
            short first = block[axis][0];
            short last = first;
            for (std::size_t i = 1; i < count; ++i) {
                first = std::min(first, block[axis][i]);
                last = std::max(last, block[axis][i]);
            }
            ResultsSummary::Axis& range = scan.axes[axis];
            range = {std::min<int>(range.first, first), std::max<int>(range.last, last)};
        }
        byX.Take(block, count);
        byZ.Take(block, count);
    });
    scan.ascending = byX.Holds() || byZ.Holds();
    return scan;
}

std::uint64_t CountByBits(const orvalo::Results& results, const ResultsSummary::Box& box) {
    const ResultsSummary::Axis& xs = box.axes[0];
    const ResultsSummary::Axis& ys = box.axes[1];
    const ResultsSummary::Axis& zs = box.axes[2];
    const auto width = static_cast<std::size_t>(ys.last - ys.first) + 1;
    const auto depth = static_cast<std::size_t>(zs.last - zs.first) + 1;
    constexpr std::size_t wordBits = 64;
    std::vector<std::uint64_t> taken(box.cells / wordBits + 1);
    Coordinates coordinates(results);
    ForEachBlock(results, [&](std::size_t rows) {
        const Coordinates::Block block = coordinates.Next(rows);
        for (std::size_t i = 0; i < rows; ++i) {
            const std::size_t column = static_cast<std::size_t>(block[0][i] - xs.first) * width +
                                       static_cast<std::size_t>(block[1][i] - ys.first);
            const std::size_t cell = column * depth + static_cast<std::size_t>(block[2][i] - zs.first);
            taken[cell / wordBits] |= std::uint64_t{1} << cell % wordBits;
        }
    });
    return std::accumulate(taken.begin(), taken.end(), std::uint64_t{0}, [](std::uint64_t count, std::uint64_t word) {
        return count + static_cast<std::uint64_t>(std::popcount(word));
    });
}

std::uint64_t CountBySorting(const orvalo::Results& results) {
    std::vector<Key> keys;
    keys.reserve(results.RowCount());
    Coordinates coordinates(results);
    ForEachBlock(results, [&](std::size_t count) {
        const Coordinates::Block block = coordinates.Next(count);
        for (std::size_t i = 0; i < count; ++i) keys.push_back(KeyOf(block[0][i], block[1][i], block[2][i]));
    });
    std::sort(keys.begin(), keys.end());
    return static_cast<std::uint64_t>(std::unique(keys.begin(), keys.end()) - keys.begin());
}

std::optional<ResultsSummary::Box> FindBox(const orvalo::Results& results) {
    const unsigned int rows = results.RowCount();
    if (rows == 0 || results.IndicesColCount() < axisNames.size()) return std::nullopt;
    const CoordinateScan scan = Scan(results);
    ResultsSummary::Box box;
    box.axes = scan.axes;
    box.cells = 1;
    for (const auto& [first, last] : box.axes) box.cells *= static_cast<std::uint64_t>(last - first) + 1;
    constexpr std::uint64_t maxBitsPerRow = 64;
    box.covered = scan.ascending                      ? rows
                  : box.cells <= maxBitsPerRow * rows ? CountByBits(results, box)
                                                      : CountBySorting(results);
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
    summary.columns.resize(results.ValuesColCount());
    const std::vector<std::string> names = ValueColumnNames(results);
    std::atomic<unsigned int> next{0};
    const auto summarizeColumns = [&] {
        for (unsigned int col = 0; (col = next++) < summary.columns.size();) {
            summary.columns[col] = SummarizeColumn(results, col);
            if (col < names.size()) summary.columns[col].name = names[col];
        }
    };
    // Two columns at a time, or the coordinates, which take as long as some of them, and one.
    auto others = std::async(summarizeColumns);
    summary.box = FindBox(results);
    summarizeColumns();
    others.get();
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
