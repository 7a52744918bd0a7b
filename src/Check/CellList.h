#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include <Orvalo3DReader/Model/Point.h>

#include "Model/CubeRecords.h"

namespace orvalo {

/// The place of a cell as one number: x in the low 16 bits, then y, then z. Numbers ascend where x runs fastest.
using CellKey = std::uint64_t;

inline CellKey KeyOf(const Point& point) {
    return PackCube(static_cast<std::uint16_t>(point.x), static_cast<std::uint16_t>(point.y),
                    static_cast<std::uint16_t>(point.z), 0);
}

inline Point PointOf(CellKey key) {
    return {static_cast<short>(key), static_cast<short>(key >> 16U), static_cast<short>(key >> 32U)};
}

/// Packed records of cells, as a grid holds them: only those that rows have filled.
struct CellList {
    const unsigned char* records = nullptr;
    std::size_t stride = cubeStride;
    std::uint64_t count = 0;

    /// The record of a row from 0: its key, and the material above that.
    std::uint64_t Record(std::uint64_t row) const {
        std::uint64_t packed;
        std::memcpy(&packed, records + row * stride, sizeof packed);
        return packed;
    }
    CellKey Key(std::uint64_t row) const { return Record(row) & (~std::uint64_t{0} >> 16U); }
};

}  // namespace orvalo
