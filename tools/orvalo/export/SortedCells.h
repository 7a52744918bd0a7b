#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include <Orvalo3DReader/Model/Point.h>

#include "export/CellData.h"

/// A cell with the records that are about it.
struct CellRow {
    static constexpr std::size_t none = SIZE_MAX;

    orvalo::Point cell;
    /// By list of records.
    std::array<std::size_t, 2> records = {none, none};

    /// What a field is here, if any record says.
    std::optional<double> Value(const CellField& field) const {
        for (auto layer = field.layers.rbegin(); layer != field.layers.rend(); ++layer) {
            if (records[layer->list] != none) return layer->Value(records[layer->list]);
        }
        return std::nullopt;
    }
};

/// All cells in ascending order, by z, then y, then x, with the planes of constant z that they form.
class SortedCells {
public:
    struct Plane {
        int z = 0;
        std::size_t first = 0;
        std::size_t end = 0;
    };

    /// Of at most two lists of records.
    explicit SortedCells(const CellData& data);

    std::size_t Count() const { return rows_.size(); }
    const CellRow& operator[](std::size_t i) const { return rows_[i]; }
    const std::vector<Plane>& Planes() const { return planes_; }

private:
    std::vector<CellRow> rows_;
    std::vector<Plane> planes_;
};
