#include "ResultsTable.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <optional>
#include <string>
#include <system_error>

#include <fmt/format.h>

#include "ResultsSummary.h"

ResultsTable::ResultsTable(const orvalo::Results& results) : results_(results), names_(ValueColumnNames(results)) {
    named_ = !names_.empty();
    while (names_.size() < Columns()) names_.push_back(fmt::format("v{}", names_.size() + 1));
}

std::optional<unsigned int> ResultsTable::Find(const std::string& column) const {
    unsigned int number = 0;
    const char* last = column.data() + column.size();
    const auto [end, error] = std::from_chars(column.data(), last, number);
    if (end == last && error == std::errc() && number < Columns()) return number;
    const auto found = std::find(names_.begin(), names_.end(), column);
    if (found == names_.end()) return std::nullopt;
    return static_cast<unsigned int>(found - names_.begin());
}

std::string ResultsTable::PlaceText(unsigned int row) const {
    if (!HasCells()) return fmt::format("row {}", row);
    const orvalo::Point cell = Cell(row);
    return fmt::format("({}, {}, {})", cell.x, cell.y, cell.z);
}
