#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include "Check/CellList.h"
#include "Check/CellSurvey.h"

/// Which cells a grid has, and which of them twice, in little memory, however large the box around them.
namespace orvalo {

/// Bytes of which a search may take three quarters, a power of two of at least 1 KiB.
inline constexpr std::size_t occupancyBudget = std::size_t{16} << 20U;

/// A row whose cell an earlier row has. Rows count from 0.
struct RepeatedCell {
    std::uint64_t row = 0;
    std::uint64_t first = 0;
    CellKey cell = 0;
};

struct RepeatedCells {
    /// The first ones, in the order of their rows.
    std::vector<RepeatedCell> cells;
    std::uint64_t count = 0;
};

/// The rows that repeat an earlier one's cell, at most `most` of them by name. Nothing but the survey is needed for a
/// list in order; one whose box fits the budget takes a bit for each cell of that; any other takes a few passes over
/// the list: more, the larger the list is beside the budget.
RepeatedCells FindRepeated(const CellList& list, const CellSurvey& survey, std::uint64_t most,
                           std::size_t budget = occupancyBudget);

/// Cells of a grid that are given in several lists.
struct SurveyedCells {
    CellList list;
    CellSurvey survey;
};

struct PointList {
    const Point* points = nullptr;
    std::uint64_t count = 0;
};

/// Calls `absent` with the list and the index in it of each point that none of the cells has, in their order.
void FindAbsent(const std::vector<SurveyedCells>& cells, const std::vector<PointList>& points,
                const std::function<void(std::size_t list, std::uint64_t index)>& absent,
                std::size_t budget = occupancyBudget);

}  // namespace orvalo
