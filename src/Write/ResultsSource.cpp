#include "Write/ResultsSource.h"

namespace orvalo {

namespace {

template <class Number>
NumberRun RunOf(const Number* first, std::size_t stride, std::uint64_t rows) {
    return {reinterpret_cast<const unsigned char*>(first), static_cast<std::ptrdiff_t>(stride * sizeof(Number)),
            sizeof(Number), rows};
}

template <class Column>
NumberRun RunOfView(const Column& column, std::uint64_t row, std::uint64_t rows) {
    const auto* const first = static_cast<const unsigned char*>(column.First());
    return {first + static_cast<std::ptrdiff_t>(row) * column.Stride(), column.Stride(), column.Size(), rows - row};
}

}  // namespace

ResultsSource::ResultsSource(const ResultsView& view)
    : rows(view.rows),
      valueColumns(view.values.size()),
      indexColumns(view.indices.size()),
      valueNames(view.valueNames),
      indexNames(view.indexNames),
      view_(&view) {}

ResultsSource::ResultsSource(const Results& results)
    : rows(results.RowCount()),
      valueColumns(results.ValuesColCount()),
      indexColumns(results.IndicesColCount()),
      mat_(dynamic_cast<const ResultsMat*>(&results)),
      txt_(dynamic_cast<const ResultsTxt*>(&results)) {
    wasRead = mat_ != nullptr || txt_ != nullptr;
    if (txt_ != nullptr) {
        const std::span<const std::string> names = txt_->ColumnNames();
        indexNames = names.first(indexColumns);
        valueNames = names.subspan(indexColumns);
    }
    if (wasRead) return;
    other_ = &results;
    otherValues_.resize(valueColumns);
    otherIndices_.resize(indexColumns);
}

NumberRun ResultsSource::Values(std::size_t column, std::uint64_t row) {
    if (view_ != nullptr) return RunOfView(view_->values[column], row, rows);
    const auto col = static_cast<unsigned int>(column);
    const auto from = static_cast<unsigned int>(row);
    if (mat_ != nullptr) return RunOf(mat_->ValueRuns(col).front().data + row, 1, rows - row);
    if (txt_ != nullptr) {
        unsigned int length = 0;
        const double* const first = txt_->ValueRun(col, from, length);
        return RunOf(first, valueColumns, length);
    }
    otherValues_[column] = other_->ValueGet(col, from);
    return RunOf(&otherValues_[column], 1, 1);
}

NumberRun ResultsSource::Indices(std::size_t column, std::uint64_t row) {
    if (view_ != nullptr) return RunOfView(view_->indices[column], row, rows);
    const auto col = static_cast<unsigned int>(column);
    const auto from = static_cast<unsigned int>(row);
    if (mat_ != nullptr) return RunOf(mat_->IndexRuns(col).front().data + row, 1, rows - row);
    if (txt_ != nullptr) {
        unsigned int length = 0;
        const short* const first = txt_->IndexRun(col, from, length);
        return RunOf(first, indexColumns, length);
    }
    otherIndices_[column] = other_->IndexGet(col, from);
    return RunOf(&otherIndices_[column], 1, 1);
}

}  // namespace orvalo
