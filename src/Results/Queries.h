#pragma once

#include <cstdint>

#include <Orvalo3DReader/Common/ReaderMessages.h>

#include "Common/Raise.h"
#include "Results/CellLookup.h"

namespace orvalo {

/// Where a query leads: to a row, or to the message that it fails with.
struct FoundRow {
    std::uint32_t row = 0;
    const ExceptionMessage* failure = nullptr;
};

/// What the checked queries test, and in which order, whatever the storage.
struct QueryRules {
    FoundRow Find(unsigned int col, unsigned int row) const {
        if (row >= rowCount) return {0, &ReaderMessages::InvalidRowNumber};
        if (col >= valueColumns) return {0, &ReaderMessages::InvalidColNumber};
        return {row, nullptr};
    }

    FoundRow Find(unsigned int col, int x, int y, int z) const {
        if (col >= valueColumns) return {0, &ReaderMessages::InvalidColNumber};
        if (!lookup.HasX(x)) return {0, &ReaderMessages::XOutOfRange};
        if (!lookup.HasY(y)) return {0, &ReaderMessages::YOutOfRange};
        if (!lookup.HasZ(z)) return {0, &ReaderMessages::ZOutOfRange};
        const std::uint32_t row = lookup.RowFromOne(x, y, z);
        if (row == 0) return {0, &ReaderMessages::NoDataFound};
        return {row - 1, nullptr};
    }

    unsigned int rowCount = 0;
    unsigned int valueColumns = 0;
    unsigned int indexColumns = 0;
    CellLookup lookup;
};

/// The value at a row or a cube; raises what Find finds wrong as `sourceModule`. A storage gives the rules and
/// Value(col, row).
template <class Storage, class... Place>
double CheckedValue(const Storage& storage, const char* sourceModule, unsigned int col, Place... place) {
    const FoundRow found = storage.Find(col, place...);
    if (found.failure != nullptr) Raise(sourceModule, __LINE__, *found.failure);
    return storage.Value(col, found.row);
}

/// The value at a row or a cube, or `def` where CheckedValue raises an error.
template <class Storage, class... Place>
double ValueOr(double def, const Storage& storage, unsigned int col, Place... place) {
    const FoundRow found = storage.Find(col, place...);
    return found.failure != nullptr ? def : storage.Value(col, found.row);
}

/// The value at a cube for which CheckedValue raises no error.
template <class Storage>
double UncheckedValue(const Storage& storage, unsigned int col, int x, int y, int z) {
    return storage.Value(col, storage.lookup.RowFromOne(x, y, z) - 1);
}

}  // namespace orvalo
