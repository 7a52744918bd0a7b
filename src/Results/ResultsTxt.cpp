#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>

#include <Orvalo3DReader/Results/ResultsTxt.h>

#include "Common/Raise.h"
#include "Results/Queries.h"
#include "Results/RowBlocks.h"
#include "Results/TextLines.h"
#include "Results/TextRow.h"
#include "Results/TextRowsAhead.h"

namespace orvalo {

struct ResultsTxt::Storage : QueryRules {
    double Value(unsigned int col, std::uint32_t row) const { return values.At(col, row); }

    unsigned int line = 0;
    std::vector<std::string> names;
    RowBlocks<short> indices;
    RowBlocks<double> values;
    DecimalRuns runs;
};

ResultsTxt::ResultsTxt(const std::string& fileName) : Results(fileName), storage_(std::make_unique<Storage>()) {}

ResultsTxt::~ResultsTxt() = default;

const std::vector<std::string>& ResultsTxt::ColumnNames() const {
    return storage_->names;
}

void ResultsTxt::ReadHeader(const TextLine& line) {
    Storage& s = *storage_;
    s.line = 1;
    if (!line.newline) ORVALO_RAISE(ResultsTxt, ReaderMessages::ErrorReadingResultsFile, Quoted(FileName()).c_str());
    TextColumns columns = NamedColumns({line.begin, static_cast<std::size_t>(line.end - line.begin)});
    s.names = std::move(columns.names);
    s.indexColumns = columns.indices;
    s.valueColumns = columns.values;
    if (s.valueColumns == 0)
        ORVALO_RAISE(ResultsTxt, ReaderMessages::ErrorReadingResultsFile, Quoted(FileName()).c_str());
    s.indices.SetColumns(s.indexColumns);
    s.values.SetColumns(s.valueColumns);
}

void ResultsTxt::ReadData(const TextLine& line) {
    Storage& s = *storage_;
    const auto lineNumber = static_cast<int>(++s.line);
    const TextRow row =
        ReadTextRow(line, s.indices.NextRow(), s.indexColumns, s.values.NextRow(), s.valueColumns, s.runs);
    if (row.end == RowEnd::Unended) {
        ORVALO_RAISE(ResultsTxt, ReaderMessages::ErrorReadingResultsFile, Quoted(FileName()).c_str());
    }
    if (row.end == RowEnd::TooMany) ORVALO_RAISE(ResultsTxt, ReaderMessages::TooManyColumnsTxt, lineNumber);
    if (row.end == RowEnd::TooFew) {
        const unsigned int missing = s.indexColumns + s.valueColumns - row.columns;
        ORVALO_RAISE(ResultsTxt, ReaderMessages::NotEnoughColumnsTxt, static_cast<int>(missing), lineNumber);
    }
    if (!s.indices.AppendRow() || !s.values.AppendRow()) ORVALO_RAISE(ResultsTxt, ReaderMessages::OutOfMemory);
    ++s.rowCount;
}

std::uint64_t ResultsTxt::ReadAhead(TextLines& lines, std::size_t longestRow, unsigned int team, TextProgress& progress,
                                    StopFlag stop) {
    Storage& s = *storage_;
    TextRowsAhead ahead({s.indices, s.values, s.indexColumns, s.valueColumns}, s.rowCount, lines, longestRow, team,
                        progress, stop);
    const auto rows = static_cast<unsigned int>(ahead.Read());
    s.line += rows - s.rowCount;
    s.rowCount = rows;
    return ahead.Blocks();
}

void ResultsTxt::Finalize(StopFlag stop, unsigned int threads) {
    const Storage& s = *storage_;
    if (s.indexColumns == 0) return;
    std::vector<CoordinateRun> runs;
    for (const ColumnRun<short>& x : s.indices.Runs(0, s.rowCount)) {
        runs.push_back({x.data, x.data + 1, x.data + 2, x.stride, x.rows});
    }
    if (!storage_->lookup.Build(runs, stop, threads)) ORVALO_RAISE(ResultsTxt, ReaderMessages::OutOfMemory);
}

const double* ResultsTxt::ValueRun(unsigned int column, unsigned int row, unsigned int& rows) const {
    rows = std::min(storage_->values.RowsOfBlockFrom(row), storage_->rowCount - row);
    return &storage_->values.At(column, row);
}
const short* ResultsTxt::IndexRun(unsigned int column, unsigned int row, unsigned int& rows) const {
    rows = std::min(storage_->indices.RowsOfBlockFrom(row), storage_->rowCount - row);
    return &storage_->indices.At(column, row);
}

bool ResultsTxt::ValuesDefined() const {
    return storage_->rowCount > 0;
}
bool ResultsTxt::IndicesDefined() const {
    return storage_->rowCount > 0;
}

int ResultsTxt::IndexGet(unsigned int col, unsigned int row) const {
    return storage_->indexColumns == 0 ? 0 : storage_->indices.At(col, row);
}

double ResultsTxt::ValueGet(unsigned int col, int x, int y, int z) const {
    return UncheckedValue(*storage_, col, x, y, z);
}

double ResultsTxt::ValueGet(unsigned int col, unsigned int row) const {
    return storage_->Value(col, row);
}

double ResultsTxt::ExValueGet(unsigned int col, int x, int y, int z) const {
    return CheckedValue(*storage_, module::ResultsTxt, col, x, y, z);
}

double ResultsTxt::ExValueGet(unsigned int col, unsigned int row) const {
    return CheckedValue(*storage_, module::ResultsTxt, col, row);
}

double ResultsTxt::SafeValueGet(unsigned int col, int x, int y, int z, double def) const {
    return ValueOr(def, *storage_, col, x, y, z);
}

double ResultsTxt::SafeValueGet(unsigned int col, unsigned int row, double def) const {
    return ValueOr(def, *storage_, col, row);
}

unsigned int ResultsTxt::RowCount() const {
    return storage_->rowCount;
}
unsigned int ResultsTxt::ValuesColCount() const {
    return storage_->valueColumns;
}
unsigned int ResultsTxt::IndicesColCount() const {
    return storage_->indexColumns;
}

std::vector<ColumnRun<double>> ResultsTxt::ValueRuns(unsigned int col) const {
    if (col >= storage_->valueColumns) ORVALO_RAISE(ResultsTxt, ReaderMessages::InvalidColNumber);
    return storage_->values.Runs(col, storage_->rowCount);
}

std::vector<ColumnRun<short>> ResultsTxt::IndexRuns(unsigned int col) const {
    if (col >= storage_->indexColumns) ORVALO_RAISE(ResultsTxt, ReaderMessages::InvalidColNumber);
    return storage_->indices.Runs(col, storage_->rowCount);
}

}  // namespace orvalo
