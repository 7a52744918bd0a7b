#pragma once

namespace orvalo {

/// A cube coordinate triple: 6 bytes, no padding.
struct Point {
    short x = 0;  ///< Cube coordinate.
    short y = 0;  ///< Cube coordinate.
    short z = 0;  ///< Cube coordinate.
};

static_assert(sizeof(Point) == 6, "arrays of points are walked 6 bytes at a time");

}  // namespace orvalo
