#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include <Orvalo3DReader/Model/Bounds.h>
#include <Orvalo3DReader/Model/Model.h>
#include <Orvalo3DReader/Model/Point.h>

#include "compare/Tolerance.h"

/// In what the cubes, or the damping cubes, of two models differ.
struct CellComparison {
    /// What a model says of a cell.
    struct Content {
        /// The number in the file.
        int material = 0;
        /// The temperature, or the damping coefficient; nothing in a grid without temperatures.
        std::optional<double> value;
    };
    /// A cell that differs; without a content in the model that does not have it.
    struct Change {
        orvalo::Point cell;
        std::optional<Content> a;
        std::optional<Content> b;
    };
    static constexpr std::size_t maxChanges = 10;

    /// Cells that only one has, and those that both have with other contents.
    std::size_t onlyA = 0;
    std::size_t onlyB = 0;
    std::size_t differing = 0;
    /// Around all of them.
    orvalo::Bounds box;
    /// The first ten, by z, then y, then x.
    std::vector<Change> first;

    std::size_t Count() const { return onlyA + onlyB + differing; }
};

/// The order of the rows does not count; of several rows for a cell the last one does.
CellComparison CompareCubes(const orvalo::Model& a, const orvalo::Model& b, const Tolerance& tolerance);
CellComparison CompareDampingCubes(const orvalo::Model& a, const orvalo::Model& b, const Tolerance& tolerance);
