#include "CellComparison.h"

#include <cstddef>
#include <optional>
#include <vector>

#include "CellOrder.h"

namespace {

using Content = CellComparison::Content;

struct GridCells {
    explicit GridCells(const orvalo::Model& source)
        : model(source), records(source.cubes.Records()), temperatures(source.cubes.TemperaturesPtr()) {}

    CellKey Key(std::size_t index) const {
        const orvalo::Cube cube = records[index];
        return KeyOf(cube.x, cube.y, cube.z);
    }
    Content At(std::size_t index) const {
        return {model.materials.Vec2File(records[index].material),
                temperatures == nullptr ? std::nullopt : std::optional(temperatures[index])};
    }

    const orvalo::Model& model;
    orvalo::RecordRange<orvalo::Cube> records;
    const double* temperatures;
};

struct DampingCells {
    explicit DampingCells(const orvalo::Model& source) : model(source), records(source.cubes.DampingRecords()) {}

    CellKey Key(std::size_t index) const {
        const orvalo::DampingCube cube = records[index];
        return KeyOf(cube.x, cube.y, cube.z);
    }
    Content At(std::size_t index) const {
        const orvalo::DampingCube cube = records[index];
        return {model.materials.Vec2File(cube.material), cube.coefficient};
    }

    const orvalo::Model& model;
    orvalo::RecordRange<orvalo::DampingCube> records;
};

bool Same(const Content& a, const Content& b, const Tolerance& tolerance) {
    if (a.material != b.material || a.value.has_value() != b.value.has_value()) return false;
    return !a.value || tolerance.Accepts(*a.value, *b.value);
}

void Take(CellComparison& comparison, CellKey key, const std::optional<Content>& a, const std::optional<Content>& b) {
    ++(!a ? comparison.onlyB : !b ? comparison.onlyA : comparison.differing);
    const orvalo::Point cell = CellOf(key);
    comparison.box.Update(cell.x, cell.y, cell.z);
    if (comparison.first.size() < CellComparison::maxChanges) comparison.first.push_back({cell, a, b});
}

/// Whether both lists have the same cells in the same order, each cell once.
template <class Cells>
bool SameAscendingCells(const Cells& a, const Cells& b) {
    if (a.records.size() != b.records.size()) return false;
    CellKey last = 0;
    for (std::size_t i = 0; i < a.records.size(); ++i) {
        const CellKey key = a.Key(i);
        if (key != b.Key(i) || (i > 0 && key <= last)) return false;
        last = key;
    }
    return true;
}

template <class Cells>
CellComparison CompareLists(const Cells& a, const Cells& b, const Tolerance& tolerance) {
    CellComparison comparison;
    const auto compare = [&](CellKey key, std::size_t indexA, std::size_t indexB) {
        const Content contentA = a.At(indexA);
        const Content contentB = b.At(indexB);
        if (!Same(contentA, contentB, tolerance)) Take(comparison, key, contentA, contentB);
    };
    if (SameAscendingCells(a, b)) {
        for (std::size_t i = 0; i < a.records.size(); ++i) compare(a.Key(i), i, i);
        return comparison;
    }
    const auto order = [](const Cells& cells) {
        return OrderCells(cells.records.size(), [&](std::size_t i) { return cells.Key(i); });
    };
    JoinCells(order(a), order(b), [&](const CellEntry* inA, const CellEntry* inB) {
        if (inB == nullptr) {
            Take(comparison, inA->key, a.At(inA->index), std::nullopt);
        } else if (inA == nullptr) {
            Take(comparison, inB->key, std::nullopt, b.At(inB->index));
        } else {
            compare(inA->key, inA->index, inB->index);
        }
    });
    return comparison;
}

}  // namespace

CellComparison CompareCubes(const orvalo::Model& a, const orvalo::Model& b, const Tolerance& tolerance) {
    return CompareLists(GridCells(a), GridCells(b), tolerance);
}

CellComparison CompareDampingCubes(const orvalo::Model& a, const orvalo::Model& b, const Tolerance& tolerance) {
    return CompareLists(DampingCells(a), DampingCells(b), tolerance);
}
