#pragma once

#include <array>
#include <cstddef>

#include <Orvalo3DReader/Model/Cubes.h>

/// Cubes per material, by the number that the cube records hold.
using MaterialCounts = std::array<std::size_t, 256>;

inline MaterialCounts CountMaterials(const orvalo::Cubes& cubes) {
    constexpr std::size_t recordSize = 7;
    constexpr std::size_t materialOffset = 6;
    MaterialCounts counts{};
    if (cubes.CubesPtr() == nullptr) return counts;
    const unsigned char* material = cubes.CubesPtr() + materialOffset;
    for (std::size_t i = 0; i < cubes.CubesCount(); ++i, material += recordSize) ++counts[*material];
    return counts;
}
