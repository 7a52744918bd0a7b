#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "Common/StopFlag.h"

namespace orvalo {

/// Coordinates of successive rows: those of row i stand at x[i * stride], y[i * stride] and z[i * stride].
struct CoordinateRun {
    const short* x;
    const short* y;
    const short* z;
    std::size_t stride;
    std::size_t rows;

    /// The rows from `begin` to before `end`.
    CoordinateRun Part(std::size_t begin, std::size_t end) const {
        const std::size_t at = begin * stride;
        return {x + at, y + at, z + at, stride, end - begin};
    }
};

/// Finds the row of a cube. The cells of the box that all rows span are numbered x first, z last, and cut into leaves
/// of 64; in a box that is not half full a leaf exists only where some row lies in it, and a directory says where. So
/// a query takes two loads, a full box costs four bytes a cell, and a sparse one at most one leaf a row.
class CellLookup {
public:
    /// Of several rows for a cube the last counts. Takes up to so many threads. False when the box has more cells than
    /// 32 bits number, or does not fit into memory. Throws Stopped.
    bool Build(std::span<const CoordinateRun> runs, StopFlag stop, unsigned int threads = 1);

    bool HasX(int x) const { return Distance(x, minX_) < sizeX_; }
    bool HasY(int y) const { return Distance(y, minY_) < sizeY_; }
    bool HasZ(int z) const { return Distance(z, minZ_) < sizeZ_; }

    /// The number of the cube's row counted from 1, or 0 when none covers it. The coordinates must lie in the box.
    std::uint32_t RowFromOne(int x, int y, int z) const {
        const std::uint32_t cell = Cell(x, y, z);
        return leaves_[std::size_t{directory_[cell / leafCells]} * leafCells + cell % leafCells];
    }

private:
    static constexpr std::uint32_t leafCells = 64;
    static constexpr std::size_t leafSize = leafCells * sizeof(std::uint32_t);

    /// Beyond every size of a box for a value that lies below: no difference wraps that far.
    static std::uint32_t Distance(int value, int from) {
        return static_cast<std::uint32_t>(value) - static_cast<std::uint32_t>(from);
    }

    std::uint32_t Cell(int x, int y, int z) const {
        return Distance(x, minX_) + Distance(y, minY_) * sizeX_ + Distance(z, minZ_) * plane_;
    }

    struct Part;
    class LeafPages;

    static std::vector<Part> Parts(std::span<const CoordinateRun> runs);
    bool Measure(std::vector<Part>& parts, StopFlag stop, unsigned int team);
    std::size_t NumberLeaves(std::vector<Part>& parts, StopFlag stop);
    std::size_t NumberAllLeaves(std::vector<Part>& parts, std::size_t count);
    std::uint32_t FirstCell(const Part& part) const;
    std::uint32_t LastCell(const Part& part) const;
    void NoteRows(const Part& part, std::uint32_t begin, std::uint32_t end);

    // All sizes are 0 until the box is known: nothing lies in it.
    int minX_ = 0;
    int minY_ = 0;
    int minZ_ = 0;
    std::uint32_t sizeX_ = 0;
    std::uint32_t sizeY_ = 0;
    std::uint32_t sizeZ_ = 0;
    std::uint32_t plane_ = 0;
    std::uint64_t volume_ = 0;
    // Leaf 0 is empty and serves all cells of the leaves that do not exist.
    std::uint32_t* directory_ = nullptr;
    std::uint32_t* leaves_ = nullptr;
    std::shared_ptr<unsigned char[]> directoryBuffer_;
    std::shared_ptr<unsigned char[]> leavesBuffer_;
};

}  // namespace orvalo
