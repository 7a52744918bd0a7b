#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>

#include <Orvalo3DReader/Model/Cubes.h>

#include "Common/Buffers.h"

namespace orvalo {

inline constexpr std::size_t cubeStride = Cubes::recordSize;
inline constexpr std::size_t dampingCubeStride = Cubes::dampingRecordSize;

/// A cube record in the low 7 bytes of a word.
inline std::uint64_t PackCube(std::uint32_t x, std::uint32_t y, std::uint32_t z, unsigned int material) {
    return std::uint64_t{x} | std::uint64_t{y} << 16U | std::uint64_t{z} << 32U | std::uint64_t{material} << 48U;
}

/// A packed record with another material.
inline std::uint64_t WithMaterial(std::uint64_t packed, unsigned int material) {
    return (packed & 0x0000FFFFFFFFFFFFU) | std::uint64_t{material} << 48U;
}

/// Writes a cube record as one 8-byte store. The eighth byte falls on the start of the next record, which is written
/// later, or on the byte of slack after the last one.
inline void StoreCube(unsigned char* record, std::uint64_t packed) {
    std::memcpy(record, &packed, sizeof packed);
}

/// Zeroed records with a byte of slack after them: clients may read the last 7-byte record as an 8-byte Cube, and
/// StoreCube writes as many. Null when they do not fit memory.
inline std::shared_ptr<unsigned char[]> AllocateRecords(std::size_t count, std::size_t stride) {
    if (count > (std::numeric_limits<std::size_t>::max() - 1) / stride) return nullptr;
    return AllocateToFill(count * stride + 1, 1);
}

}  // namespace orvalo
