#pragma once

#include <bitset>
#include <cstdint>

#include <Orvalo3DReader/Model/Bounds.h>

#include "Check/CellList.h"

namespace orvalo {

/// What one pass over the cells of a list tells of them.
struct CellSurvey {
    explicit CellSurvey(const CellList& list);

    /// Whether each cell comes after the one before, x running fastest, or z: then none occurs twice.
    bool ascendsByX = true;
    bool ascendsByZ = true;
    Bounds box;
    /// The vector indices of the materials that occur.
    std::bitset<256> materials;

    bool Ascends() const { return ascendsByX || ascendsByZ; }
    /// How many cells the box has room for.
    std::uint64_t Volume() const;
};

/// A key that ascends where z runs fastest.
inline CellKey ByZ(CellKey key) {
    return (key & 0xFFFFU) << 32U | (key & 0xFFFF0000U) | key >> 32U;
}

/// The smallest box around two.
Bounds Union(const Bounds& a, const Bounds& b);
std::uint64_t VolumeOf(const Bounds& box);
bool Holds(const Bounds& box, const Point& point);

}  // namespace orvalo
