#pragma once

#include <memory>

#include <Orvalo3DReader/Export.h>
#include <Orvalo3DReader/Model/Point.h>

namespace orvalo {

/// A numbered list of cube positions.
///
/// Copies show the same points as their source and share them; the last copy releases them.
class ORVALO3DREADER_EXPORT Set {
public:
    /// An empty set.
    Set() = default;
    /// A set of `pointsCount` points at the origin. Throws OutOfMemory.
    Set(int setId, unsigned int pointsCount);
    /// Shares the points. There is no move: it would leave `points` behind without their buffer.
    Set(const Set&) = default;
    /// Shares the points.
    Set& operator=(const Set&) = default;

    /// The first point, for going through them all.
    const Point* begin() const { return points; }
    /// Past the last point.
    const Point* end() const { return points + count; }

    /// From the file; 0 for an empty set.
    int id = 0;
    /// Number of positions.
    unsigned int count = 0;
    /// `count` packed points in file order, at the start of a buffer of 12 bytes per point. Owned by this object and
    /// its copies.
    Point* points = nullptr;

private:
    std::shared_ptr<unsigned char[]> storage_;
};

}  // namespace orvalo
