#pragma once

#include <cstddef>
#include <cstdint>

#include <Orvalo3DReader/Model/Bounds.h>
#include <Orvalo3DReader/Model/Point.h>

/// A box of cells, x fastest, then y, then z. A row of it is what runs along x.
struct GridRegion {
    orvalo::Point first;
    std::size_t sizeX = 0;
    std::size_t sizeY = 0;
    std::size_t sizeZ = 0;

    GridRegion() = default;
    explicit GridRegion(const orvalo::Bounds& bounds) {
        if (!bounds.defined) return;
        first = {bounds.minX, bounds.minY, bounds.minZ};
        const auto size = [](int least, int greatest) { return static_cast<std::size_t>(greatest - least) + 1; };
        sizeX = size(bounds.minX, bounds.maxX);
        sizeY = size(bounds.minY, bounds.maxY);
        sizeZ = size(bounds.minZ, bounds.maxZ);
    }

    std::size_t Rows() const { return sizeY * sizeZ; }
    std::uint64_t Cells() const { return std::uint64_t{sizeX} * Rows(); }
};

/// Some successive rows of a region.
struct GridSlab {
    const GridRegion* region = nullptr;
    std::size_t firstRow = 0;
    std::size_t rows = 0;

    std::size_t Cells() const { return rows * region->sizeX; }
    int FirstZ() const { return region->first.z + static_cast<int>(firstRow / region->sizeY); }
    int LastZ() const { return region->first.z + static_cast<int>((firstRow + rows - 1) / region->sizeY); }

    static constexpr std::size_t none = SIZE_MAX;
    /// The number of a cell within the slab, or `none`.
    std::size_t Find(int x, int y, int z) const {
        // Differences below zero become too large.
        const auto dx = static_cast<std::size_t>(x - region->first.x);
        const auto dy = static_cast<std::size_t>(y - region->first.y);
        const auto dz = static_cast<std::size_t>(z - region->first.z);
        if (dx >= region->sizeX || dy >= region->sizeY || dz >= region->sizeZ) return none;
        const std::size_t row = dz * region->sizeY + dy - firstRow;
        return row < rows ? row * region->sizeX + dx : none;
    }
};
