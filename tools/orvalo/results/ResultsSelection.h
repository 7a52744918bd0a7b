#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "results/ResultsTable.h"

/// Some rows of results, in some order, with some of the value columns.
class ResultsSelection {
public:
    /// All rows. `table` must outlive the selection.
    ResultsSelection(const ResultsTable& table, std::vector<unsigned int> columns)
        : table_(&table), columns_(std::move(columns)) {}
    ResultsSelection(const ResultsTable& table, std::vector<unsigned int> columns, std::vector<unsigned int> rows)
        : table_(&table), columns_(std::move(columns)), rows_(std::move(rows)) {}

    const ResultsTable& Table() const { return *table_; }
    std::size_t Rows() const { return rows_ ? rows_->size() : table_->Rows(); }
    /// The number of a selected row in the whole table.
    unsigned int Row(std::size_t i) const { return rows_ ? (*rows_)[i] : static_cast<unsigned int>(i); }
    std::size_t Columns() const { return columns_.size(); }
    std::size_t Indices() const { return table_->HasCells() ? table_->Source().IndicesColCount() : 0; }
    /// Whether it is all rows and columns, as they are in the table.
    bool Whole() const;

    double Value(std::size_t column, std::size_t i) const {
        return table_->Source().ValueGet(columns_[column], Row(i));
    }
    int Index(std::size_t column, std::size_t i) const {
        return table_->Source().IndexGet(static_cast<unsigned int>(column), Row(i));
    }

    const std::string& ColumnName(std::size_t column) const { return table_->Name(columns_[column]); }
    /// Names under which formats can keep the columns that know each by its name: none is empty or occurs twice.
    std::vector<std::string> UniqueNames() const;
    /// x, y, z, then f, f2 and so on.
    std::vector<std::string> IndexNames() const;

private:
    const ResultsTable* table_;
    std::vector<unsigned int> columns_;
    std::optional<std::vector<unsigned int>> rows_;
};
