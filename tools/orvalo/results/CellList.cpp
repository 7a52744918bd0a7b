#include "CellList.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cstddef>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <unordered_map>
#include <vector>

#include <fmt/format.h>

#include "CellKey.h"
#include "PathText.h"

namespace {

constexpr int least = -32768;
constexpr int greatest = 32767;

std::optional<int> ToCoordinate(std::string_view text) {
    int number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (end != text.data() + text.size() || error != std::errc() || number < least || number > greatest) {
        return std::nullopt;
    }
    return number;
}

/// The coordinates at the start of a line; nothing for a line that says nothing.
std::optional<std::array<int, 3>> ParseLine(std::string_view line, const std::string& place) {
    constexpr std::string_view separators = " \t,;\r";
    const auto skip = [&] { line.remove_prefix(std::min(line.find_first_not_of(separators), line.size())); };
    skip();
    if (line.empty() || line.front() == '#' || std::isalpha(static_cast<unsigned char>(line.front())) != 0)
        return std::nullopt;
    std::array<int, 3> cell{};
    for (int& coordinate : cell) {
        const std::string_view word = line.substr(0, line.find_first_of(separators));
        const auto number = ToCoordinate(word);
        if (!number) {
            throw CellListError(place +
                                ": error: Three whole numbers from -32768 to 32767 should stand here: x, y, z.");
        }
        coordinate = *number;
        line.remove_prefix(word.size());
        skip();
    }
    return cell;
}

}  // namespace

CellBox ParseCellBox(const std::string& text) {
    CellBox box;
    std::size_t axis = 0;
    std::string_view rest = text;
    const auto wrong = [] {
        return CellListError("a box is written x0:x1,y0:y1,z0:z1, with coordinates from -32768 to 32767");
    };
    for (bool more = true; more; ++axis) {
        const std::size_t comma = rest.find(',');
        std::string_view range = rest.substr(0, comma);
        more = comma != std::string_view::npos;
        if (more) rest.remove_prefix(comma + 1);
        if (axis == 3 || range.empty()) throw wrong();
        const std::size_t colon = range.find(':');
        const std::string_view from = range.substr(0, colon);
        const std::string_view to = colon == std::string_view::npos ? from : range.substr(colon + 1);
        const auto first = from.empty() ? std::optional(least) : ToCoordinate(from);
        const auto last = to.empty() ? std::optional(greatest) : ToCoordinate(to);
        if (!first || !last) throw wrong();
        box.first[axis] = *first;
        box.last[axis] = *last;
    }
    if (axis != 3) throw wrong();
    return box;
}

std::vector<orvalo::Point> ReadCells(const std::string& path, const std::string& shownName) {
    std::ifstream file(PathOf(path), std::ios::binary);
    if (!file) throw CellListError(shownName + ": error: Unable to open the file.");
    std::vector<orvalo::Point> cells;
    std::string line;
    for (std::size_t number = 1; std::getline(file, line); ++number) {
        const auto cell = ParseLine(line, fmt::format("{}:{}", shownName, number));
        if (!cell) continue;
        const auto [x, y, z] = *cell;
        cells.push_back({static_cast<short>(x), static_cast<short>(y), static_cast<short>(z)});
    }
    if (file.bad()) throw CellListError(shownName + ": error: Unable to read the file.");
    return cells;
}

std::vector<unsigned int> RowsIn(const ResultsTable& table, const CellBox& box) {
    std::vector<unsigned int> rows;
    for (unsigned int row = 0; row < table.Rows(); ++row) {
        if (box.Contains(table.Cell(row))) rows.push_back(row);
    }
    return rows;
}

FoundRows RowsOf(const ResultsTable& table, const std::vector<orvalo::Point>& cells) {
    std::unordered_map<CellKey, std::optional<unsigned int>> wanted;
    for (const orvalo::Point& cell : cells) wanted[KeyOf(cell.x, cell.y, cell.z)];
    for (unsigned int row = 0; row < table.Rows(); ++row) {
        const auto found = wanted.find(table.Key(row));
        if (found != wanted.end()) found->second = row;
    }
    FoundRows found;
    for (const orvalo::Point& cell : cells) {
        const auto row = wanted[KeyOf(cell.x, cell.y, cell.z)];
        if (row) found.rows.push_back(*row);
        if (!row) found.missing.push_back(cell);
    }
    return found;
}
