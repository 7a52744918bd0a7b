#pragma once

#include <cstdint>

#include <Orvalo3DReader/Model/Point.h>

/// A cell as one number: ordered by z, then y, then x.
using CellKey = std::uint64_t;

inline CellKey KeyOf(int x, int y, int z) {
    constexpr int bits = 16;
    const auto shifted = [](int coordinate) {
        const int fromLowest = coordinate + (1 << (bits - 1));
        return static_cast<CellKey>(fromLowest);
    };
    return (shifted(z) << (2 * bits)) | (shifted(y) << bits) | shifted(x);
}

inline orvalo::Point CellOf(CellKey key) {
    constexpr unsigned int bits = 16;
    const auto coordinate = [key](unsigned int shift) {
        return static_cast<short>(static_cast<int>((key >> shift) & 0xFFFFU) - (1 << (bits - 1)));
    };
    return {coordinate(0), coordinate(bits), coordinate(2 * bits)};
}
