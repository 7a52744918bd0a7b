#pragma once

#include <Orvalo3DReader/Export.h>

namespace orvalo {

/// The bounding box of a set of cube coordinates. All limits are inclusive and all arithmetic is 16-bit.
class ORVALO3DREADER_EXPORT Bounds {
public:
    /// The shift that Normalize applied: a cube at (x, y, z) lies at (x + norm.x, y + norm.y, z + norm.z) in the
    /// normalized box.
    struct Norm {
        short x = 0;
        short y = 0;
        short z = 0;
    };

    /// Widens the box to hold the point. The first point makes the box.
    void Update(short x, short y, short z);

    /// Moves every limit outwards by `margin` cubes, wrapping at 16 bits.
    void Inflate(short margin);

    /// Moves the box so that its lower corner is the origin and stores the shift in `norm`. Called again, it leaves
    /// the box in place and overwrites the shift with zero.
    void Normalize();

    /// True once a point has been added.
    bool defined = false;
    /// True once Normalize has been called.
    bool normalized = false;
    short minX = 0;
    short maxX = 0;
    short minY = 0;
    short maxY = 0;
    short minZ = 0;
    short maxZ = 0;
    Norm norm;
};

}  // namespace orvalo
