#include <cstring>

#include <Orvalo3DReader/Model/Table.h>

#include "Common/Buffers.h"
#include "Common/Raise.h"

namespace orvalo {

void Table::Allocate(bool asDoubles) {
    doublePrecision = asDoubles;
    elementSize = asDoubles ? sizeof(double) : sizeof(float);
    data = nullptr;
    storage_ = AllocateToFill(count, elementSize);
    if (!storage_) Raise(module::Table, knownLine::TableSamples, ReaderMessages::OutOfMemory);
    data = storage_.get();
}

double Table::Get(std::size_t index) const {
    const unsigned char* sample = static_cast<const unsigned char*>(data) + elementSize * index;
    if (doublePrecision) {
        double value;
        std::memcpy(&value, sample, sizeof value);
        return value;
    }
    float value;
    std::memcpy(&value, sample, sizeof value);
    return static_cast<double>(value);
}

}  // namespace orvalo
