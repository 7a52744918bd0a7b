#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include <Orvalo3DReader/Model/Point.h>

#include "compare/Tolerance.h"
#include "results/ResultsTable.h"

/// In what results differ, cube by cube, or row by row where not both have cubes.
struct ResultsComparison {
    /// The pair of values that lie farthest apart, by some measure.
    struct Extreme {
        double distance = 0.0;
        unsigned int rowA = 0;
        unsigned int rowB = 0;
        double a = 0.0;
        double b = 0.0;
    };
    struct Column {
        /// The numbers of the column in both.
        unsigned int a = 0;
        unsigned int b = 0;
        std::string name;
        /// Pairs that differ by more than is tolerated.
        std::size_t differing = 0;
        /// Those among them of which not both values are finite.
        std::size_t notFinite = 0;
        /// The largest differences, tolerated or not, of values that are finite; nothing where all are equal.
        std::optional<Extreme> absolute = std::nullopt;
        std::optional<Extreme> relative = std::nullopt;
        /// Root of the mean square of the differences of finite values.
        double rms = 0.0;
    };
    /// Rows whose counterpart is missing.
    struct Lone {
        static constexpr std::size_t max = 10;

        std::size_t count = 0;
        /// The first ten.
        std::vector<unsigned int> rows;
    };

    bool byCube = true;
    /// Cubes, or rows, that both have.
    std::size_t common = 0;
    /// Of those the ones whose further index columns differ.
    std::size_t indicesDiffering = 0;
    Lone onlyA;
    Lone onlyB;
    std::vector<Column> columns;
    /// Names of columns that only one has.
    std::vector<std::string> columnsOnlyA;
    std::vector<std::string> columnsOnlyB;
    /// Whether only one has coordinates.
    bool coordinatesDiffer = false;

    bool Equal() const;
};

/// Columns are matched by name where both have names, else by number. Of several rows for a cube the last one counts.
ResultsComparison Compare(const ResultsTable& a, const ResultsTable& b, const Tolerance& tolerance);
