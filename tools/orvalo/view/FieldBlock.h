#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "export/SortedCells.h"

/// A field of the cells as a page keeps it: a level for each cell, which is the number of one of its values if these
/// are few, or a part of the range. The four highest levels are for -infinity, infinity, what is no number, and what is
/// missing.
struct FieldBlock {
    /// 8 or 16.
    unsigned int bits = 8;
    /// How many levels there are from least to greatest.
    std::size_t steps = 0;
    /// The values by level, ascending, packed; empty if they are not kept.
    std::string values;
    /// Packed. Of 16 bits all low bytes come before all high ones.
    std::string levels;
    std::size_t Size() const { return values.size() + levels.size(); }

    /// Of the values that are finite, and cells that have them; no cells without such values.
    double least = 0.0;
    double greatest = 0.0;
    std::optional<std::size_t> leastCell;
    std::optional<std::size_t> greatestCell;
};

/// With at most so many levels, which are no more than 65532.
FieldBlock MakeFieldBlock(const SortedCells& cells, const CellField& field, std::size_t maxSteps);
