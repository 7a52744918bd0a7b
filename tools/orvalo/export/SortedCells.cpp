#include "SortedCells.h"

#include <array>
#include <cstddef>
#include <vector>

#include "CellOrder.h"

SortedCells::SortedCells(const CellData& data) {
    std::array<std::vector<CellEntry>, 2> lists;
    for (std::size_t list = 0; list < data.lists.size(); ++list) {
        const CellRecords& records = data.lists[list];
        lists[list] = OrderCells(records.Count(), [&](std::size_t i) {
            const orvalo::Point cell = records.Cell(i);
            return KeyOf(cell.x, cell.y, cell.z);
        });
    }
    rows_.reserve(lists[0].size() + lists[1].size());
    JoinCells(lists[0], lists[1], [&](const CellEntry* a, const CellEntry* b) {
        CellRow row;
        row.cell = CellOf(a != nullptr ? a->key : b->key);
        if (a != nullptr) row.records[0] = a->index;
        if (b != nullptr) row.records[1] = b->index;
        if (planes_.empty() || planes_.back().z != row.cell.z) planes_.push_back({row.cell.z, rows_.size(), 0});
        rows_.push_back(row);
        planes_.back().end = rows_.size();
    });
}
