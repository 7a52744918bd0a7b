#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include <Orvalo3DReader/Model/Point.h>
#include <Orvalo3DReader/Results/Results.h>

#include "CellKey.h"

/// Results as a table, in the terms of those who look at rows: which columns there are under which names, and which
/// cube a row is about.
class ResultsTable {
public:
    /// `results` must outlive the table.
    explicit ResultsTable(const orvalo::Results& results);

    const orvalo::Results& Source() const { return results_; }
    unsigned int Rows() const { return results_.RowCount(); }
    unsigned int Columns() const { return results_.ValuesColCount(); }
    bool HasCells() const { return results_.IndicesColCount() >= 3; }
    /// The name that the file gives a value column; where it gives none, such as "v1".
    const std::string& Name(unsigned int column) const { return names_[column]; }
    /// Whether the names are the file's.
    bool Named() const { return named_; }
    /// The number of a value column by its name or its number, from 0. What reads as a number is one.
    std::optional<unsigned int> Find(const std::string& column) const;

    orvalo::Point Cell(unsigned int row) const {
        return {static_cast<short>(results_.IndexGet(0, row)), static_cast<short>(results_.IndexGet(1, row)),
                static_cast<short>(results_.IndexGet(2, row))};
    }
    CellKey Key(unsigned int row) const {
        return KeyOf(results_.IndexGet(0, row), results_.IndexGet(1, row), results_.IndexGet(2, row));
    }
    /// Where a row is, for people: "(1, 2, 3)", or "row 7" of results without cubes.
    std::string PlaceText(unsigned int row) const;

private:
    const orvalo::Results& results_;
    std::vector<std::string> names_;
    bool named_ = false;
};
