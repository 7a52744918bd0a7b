#include <array>
#include <cstddef>
#include <cstdint>

#include <Orvalo3DReader/Results/ResultsMat.h>

#include "Common/Buffers.h"
#include "Common/Raise.h"
#include "Results/MatLayout.h"
#include "Results/QueryRules.h"

namespace orvalo {

using mat::mostValueColumns;

struct ResultsMat::Storage : QueryRules {
    double Value(unsigned int col, std::uint32_t row) const { return values[col][row]; }

    unsigned int indexRows = 0;
    std::array<double*, mostValueColumns> values{};
    short* indices = nullptr;
    std::array<std::shared_ptr<unsigned char[]>, mostValueColumns> valueBuffers;
    std::shared_ptr<unsigned char[]> indexBuffer;
};

ResultsMat::ResultsMat(const std::string& fileName) : Results(fileName), storage_(std::make_unique<Storage>()) {}

ResultsMat::~ResultsMat() = default;

void ResultsMat::DefineValues(unsigned int columns, unsigned int rows) {
    if (columns > mostValueColumns) ORVALO_RAISE(ResultsMat, ReaderMessages::TooManyColumnsMat);
    storage_->valueColumns = columns;
    storage_->rowCount = rows;
}

// Small pages: large ones would fill faster where memory is at hand, but may cost several times as much where a virtual
// machine has yet to be given it.
double* ResultsMat::AllocateValues(unsigned int column) {
    auto& buffer = storage_->valueBuffers[column];
    buffer = AllocateZeroed(storage_->rowCount, sizeof(double));
    if (!buffer) ORVALO_RAISE(ResultsMat, ReaderMessages::OutOfMemory);
    return storage_->values[column] = reinterpret_cast<double*>(buffer.get());
}

short* ResultsMat::AllocateIndices(unsigned int columns, unsigned int rows) {
    storage_->indexColumns = columns;
    storage_->indexRows = rows;
    storage_->indexBuffer = AllocateZeroed(std::size_t{columns} * rows, sizeof(short));
    if (!storage_->indexBuffer) ORVALO_RAISE(ResultsMat, ReaderMessages::OutOfMemory);
    return storage_->indices = reinterpret_cast<short*>(storage_->indexBuffer.get());
}

void ResultsMat::Finalize() {
    const std::size_t rows = storage_->indexRows;
    if (storage_->rowCount != rows) ORVALO_RAISE(ResultsMat, ReaderMessages::DifferentRowCount);
    const short* const x = storage_->indices;
    const std::array<CoordinateRun, 1> run = {{{x, x + rows, x + 2 * rows, 1, rows}}};
    if (!storage_->lookup.Build(run)) ORVALO_RAISE(ResultsMat, ReaderMessages::OutOfMemory);
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
    return storage_->Value(col, storage_->lookup.RowFromOne(x, y, z) - 1);
}

double ResultsMat::ValueGet(unsigned int col, unsigned int row) const {
    return storage_->Value(col, row);
}

double ResultsMat::ExValueGet(unsigned int col, int x, int y, int z) const {
    const FoundRow found = storage_->Find(col, x, y, z);
    if (found.failure != nullptr) ORVALO_RAISE(ResultsMat, *found.failure);
    return storage_->Value(col, found.row);
}

double ResultsMat::ExValueGet(unsigned int col, unsigned int row) const {
    const FoundRow found = storage_->Find(col, row);
    if (found.failure != nullptr) ORVALO_RAISE(ResultsMat, *found.failure);
    return storage_->Value(col, found.row);
}

double ResultsMat::SafeValueGet(unsigned int col, int x, int y, int z, double def) const {
    const FoundRow found = storage_->Find(col, x, y, z);
    return found.failure != nullptr ? def : storage_->Value(col, found.row);
}

double ResultsMat::SafeValueGet(unsigned int col, unsigned int row, double def) const {
    const FoundRow found = storage_->Find(col, row);
    return found.failure != nullptr ? def : storage_->Value(col, found.row);
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

}  // namespace orvalo
