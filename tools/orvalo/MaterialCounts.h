#pragma once

#include <array>
#include <cstddef>

#include <Orvalo3DReader/Model/Cubes.h>

/// Cubes per material, by the number that the cube records hold.
using MaterialCounts = std::array<std::size_t, 256>;

inline MaterialCounts CountMaterials(const orvalo::Cubes& cubes) {
    MaterialCounts counts{};
    for (const orvalo::Cube cube : cubes.Records()) ++counts[cube.material];
    return counts;
}
