#pragma once

#include <Orvalo3DReader/Export.h>

namespace orvalo {

/// The bounding box of a set of cube coordinates. All limits are inclusive and all arithmetic is 16-bit.
class ORVALO3DREADER_EXPORT Bounds {
public:
    /// The shift that Normalize applied: a cube at (x, y, z) lies at (x + norm.x, y + norm.y, z + norm.z) in the
    /// normalized box.
    struct Norm {
        short x = 0;  ///< Along x.
        short y = 0;  ///< Along y.
        short z = 0;  ///< Along z.
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
    short minX = 0;  ///< Lowest x.
    short maxX = 0;  ///< Highest x.
    short minY = 0;  ///< Lowest y.
    short maxY = 0;  ///< Highest y.
    short minZ = 0;  ///< Lowest z.
    short maxZ = 0;  ///< Highest z.
    Norm norm;       ///< The shift; zero before Normalize.
};

}  // namespace orvalo
