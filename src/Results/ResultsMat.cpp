#include <array>
#include <cstddef>
#include <cstdint>

#include <Orvalo3DReader/Results/ResultsMat.h>

#include "Common/Buffers.h"
#include "Common/Raise.h"
#include "Results/MatLayout.h"
#include "Results/Queries.h"

namespace orvalo {

using mat::maxValueColumns;

struct ResultsMat::Storage : QueryRules {
    double Value(unsigned int col, std::uint32_t row) const { return values[col][row]; }

    unsigned int indexRows = 0;
    std::array<double*, maxValueColumns> values{};
    short* indices = nullptr;
    std::array<std::shared_ptr<unsigned char[]>, maxValueColumns> valueBuffers;
    std::shared_ptr<unsigned char[]> indexBuffer;
};

ResultsMat::ResultsMat(const std::string& fileName) : Results(fileName), storage_(std::make_unique<Storage>()) {}

ResultsMat::~ResultsMat() = default;

void ResultsMat::DefineValues(unsigned int columns, unsigned int rows) {
    if (columns > maxValueColumns) ORVALO_RAISE(ResultsMat, ReaderMessages::TooManyColumnsMat);
    storage_->valueColumns = columns;
    storage_->rowCount = rows;
}

double* ResultsMat::AllocateValues(unsigned int column) {
    auto& buffer = storage_->valueBuffers[column];
    buffer = AllocateToFill(storage_->rowCount, sizeof(double));
    if (!buffer) ORVALO_RAISE(ResultsMat, ReaderMessages::OutOfMemory);
    return storage_->values[column] = reinterpret_cast<double*>(buffer.get());
}

short* ResultsMat::AllocateIndices(unsigned int columns, unsigned int rows) {
    storage_->indexColumns = columns;
    storage_->indexRows = rows;
    storage_->indexBuffer = AllocateToFill(std::size_t{columns} * rows, sizeof(short));
    if (!storage_->indexBuffer) ORVALO_RAISE(ResultsMat, ReaderMessages::OutOfMemory);
    return storage_->indices = reinterpret_cast<short*>(storage_->indexBuffer.get());
}

void ResultsMat::Finalize(StopFlag stop, unsigned int threads) {
    const std::size_t rows = storage_->indexRows;
    if (storage_->rowCount != rows) ORVALO_RAISE(ResultsMat, ReaderMessages::DifferentRowCount);
    const short* const x = storage_->indices;
    const std::array<CoordinateRun, 1> run = {{{x, x + rows, x + 2 * rows, 1, rows}}};
    if (!storage_->lookup.Build(run, stop, threads)) ORVALO_RAISE(ResultsMat, ReaderMessages::OutOfMemory);
}

bool ResultsMat::ValuesDefined() const {
    return storage_->values[0] != nullptr;
}
bool ResultsMat::IndicesDefined() const {
    return storage_->indices != nullptr;
}

int ResultsMat::IndexGet(unsigned int col, unsigned int row) const {
    return storage_->indices[std::size_t{col} * storage_->indexRows + row];
}

double ResultsMat::ValueGet(unsigned int col, int x, int y, int z) const {
    return UncheckedValue(*storage_, col, x, y, z);
}

double ResultsMat::ValueGet(unsigned int col, unsigned int row) const {
    return storage_->Value(col, row);
}

double ResultsMat::ExValueGet(unsigned int col, int x, int y, int z) const {
    return CheckedValue(*storage_, module::ResultsMat, col, x, y, z);
}

double ResultsMat::ExValueGet(unsigned int col, unsigned int row) const {
    return CheckedValue(*storage_, module::ResultsMat, col, row);
}

double ResultsMat::SafeValueGet(unsigned int col, int x, int y, int z, double def) const {
    return ValueOr(def, *storage_, col, x, y, z);
}

double ResultsMat::SafeValueGet(unsigned int col, unsigned int row, double def) const {
    return ValueOr(def, *storage_, col, row);
}

unsigned int ResultsMat::RowCount() const {
    return storage_->rowCount;
}
unsigned int ResultsMat::ValuesColCount() const {
    return storage_->valueColumns;
}
unsigned int ResultsMat::IndicesColCount() const {
    return storage_->indexColumns;
}

std::vector<ColumnRun<double>> ResultsMat::ValueRuns(unsigned int col) const {
    const Storage& s = *storage_;
    if (col >= s.valueColumns) ORVALO_RAISE(ResultsMat, ReaderMessages::InvalidColNumber);
    if (s.rowCount == 0) return {};
    return {{s.values[col], 1, s.rowCount}};
}

std::vector<ColumnRun<short>> ResultsMat::IndexRuns(unsigned int col) const {
    const Storage& s = *storage_;
    if (col >= s.indexColumns) ORVALO_RAISE(ResultsMat, ReaderMessages::InvalidColNumber);
    if (s.indexRows == 0) return {};
    return {{s.indices + std::size_t{col} * s.indexRows, 1, s.indexRows}};
}

}  // namespace orvalo
