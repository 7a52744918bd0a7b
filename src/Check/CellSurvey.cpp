#include "Check/CellSurvey.h"

#include <array>
#include <cstddef>

#include "Reader/RowBounds.h"

namespace orvalo {

CellSurvey::CellSurvey(const CellList& list) {
    std::array<bool, 256> used{};
    RowBounds bounds;
    CellKey last = 0;
    bool byX = true;
    bool byZ = true;
    for (std::uint64_t row = 0; row < list.count; ++row) {
        const std::uint64_t record = list.Record(row);
        const CellKey key = record & (~std::uint64_t{0} >> 16U);
        used[static_cast<std::uint8_t>(record >> 48U)] = true;
        bounds.Add(record);
        byX &= row == 0 || key > last;
        byZ &= row == 0 || ByZ(key) > ByZ(last);
        last = key;
    }
    ascendsByX = byX;
    ascendsByZ = byZ;
    bounds.Widen(box);
    for (std::size_t material = 0; material < used.size(); ++material) materials[material] = used[material];
}

std::uint64_t CellSurvey::Volume() const {
    return VolumeOf(box);
}

Bounds Union(const Bounds& a, const Bounds& b) {
    Bounds both = a;
    if (b.defined) both.Update(b.minX, b.minY, b.minZ);
    if (b.defined) both.Update(b.maxX, b.maxY, b.maxZ);
    return both;
}

std::uint64_t VolumeOf(const Bounds& box) {
    if (!box.defined) return 0;
    const auto length = [](short least, short most) {
        return std::uint64_t{1} + static_cast<std::uint64_t>(most - least);
    };
    return length(box.minX, box.maxX) * length(box.minY, box.maxY) * length(box.minZ, box.maxZ);
}

bool Holds(const Bounds& box, const Point& point) {
    return box.defined && point.x >= box.minX && point.x <= box.maxX && point.y >= box.minY && point.y <= box.maxY &&
           point.z >= box.minZ && point.z <= box.maxZ;
}

}  // namespace orvalo
