#pragma once

namespace orvalo {

/// A cube coordinate triple: 6 bytes, no padding.
struct Point {
    short x = 0;
    short y = 0;
    short z = 0;
};

static_assert(sizeof(Point) == 6, "arrays of points are walked 6 bytes at a time");

}  // namespace orvalo
