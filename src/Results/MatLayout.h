#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

/// The accepted part of the MAT-file format: the header of a file, then elements, each a matrix. See
/// docs/results-format.md.
namespace orvalo::mat {

inline constexpr std::size_t headerSize = 128;
inline constexpr std::string_view headerText = "MATLAB 5.0 MAT-file";
/// Version 1.0 and the mark of a file written little-endian.
inline constexpr std::string_view version("\0\1IM", 4);

inline bool IsMat(std::string_view header) {
    return header.size() == headerSize && header.starts_with(headerText);
}

inline constexpr std::uint32_t miInt8 = 1;
inline constexpr std::uint32_t miInt16 = 3;
inline constexpr std::uint32_t miInt32 = 5;
inline constexpr std::uint32_t miUint32 = 6;
inline constexpr std::uint32_t miDouble = 9;
inline constexpr std::uint32_t miMatrix = 14;
/// The class double with no flag set.
inline constexpr std::uint32_t doubleArray = 6;

/// The first words of an element, in which the six after type and byte count are fixed.
struct Head {
    std::uint32_t type;
    std::uint32_t byteCount;
    std::array<std::uint32_t, 6> fixed;
    std::uint32_t rows;
    std::uint32_t columns;
};
static_assert(sizeof(Head) == 40);
/// The tag and words of the array flags, and the tag of two dimensions.
inline constexpr std::array<std::uint32_t, 6> accepted = {miUint32, 8, doubleArray, 0, miInt32, 8};

/// What an element holds besides its name and data, its own tag not counted.
inline constexpr std::uint64_t fixedSize = sizeof(Head);

/// A name has fewer bytes than this one.
inline constexpr std::uint32_t nameCapacity = 4096;
/// A name is padded to a multiple of four bytes, where the format pads to eight.
constexpr std::uint32_t StoredNameSize(std::uint32_t length) {
    return (length + 3U) & ~3U;
}

/// A matrix of indices begins with the coordinates.
inline constexpr std::uint32_t leastIndexColumns = 3;
inline constexpr std::size_t maxValueColumns = 9;

inline std::uint64_t ElementSize(std::uint32_t dataType) {
    return dataType == miDouble ? sizeof(double) : sizeof(short);
}

}  // namespace orvalo::mat
