#include "Results/CellLookup.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <vector>

#include "Common/Buffers.h"
#include "Common/PageCommitter.h"
#include "Common/Workers.h"

namespace orvalo {

namespace {

struct Range {
    short least = std::numeric_limits<short>::max();
    short most = std::numeric_limits<short>::min();

    void Add(short value) {
        least = std::min(least, value);
        most = std::max(most, value);
    }
    void Add(const Range& other) {
        least = std::min(least, other.least);
        most = std::max(most, other.most);
    }
};

Range RangeOf(const short* values, std::size_t stride, std::size_t rows) {
    Range range;
    // The one stride known to the compiler lets it take many rows at once.
    if (stride == 1) {
        for (std::size_t i = 0; i < rows; ++i) range.Add(values[i]);
    } else {
        for (std::size_t i = 0; i < rows; ++i) range.Add(values[i * stride]);
    }
    return range;
}

struct Box {
    void Add(const Box& other) {
        x.Add(other.x);
        y.Add(other.y);
        z.Add(other.z);
    }

    Range x;
    Range y;
    Range z;
};

constexpr std::size_t inLine = 4;

/// Four coordinates from there on.
std::uint64_t LoadCoordinates(const short* coordinates) {
    std::uint64_t four;
    std::memcpy(&four, coordinates, sizeof four);
    return four;
}

/// Whether the four rows from `row` on lie side by side along x, as those of a grid do that was written cell by cell.
bool LieInLine(const CoordinateRun& run, std::size_t row) {
    constexpr std::uint64_t ones = 0x0001'0001'0001'0001U;
    constexpr std::uint64_t steps = 0x0003'0002'0001'0000U;
    // Not where a step would be carried into the next coordinate.
    constexpr unsigned int greatest = std::numeric_limits<short>::max() - 3;
    const auto all = [](short value) { return ones * static_cast<std::uint16_t>(value); };
    const short x = run.x[row];
    return static_cast<std::uint16_t>(x) <= greatest && LoadCoordinates(run.x + row) == all(x) + steps &&
           LoadCoordinates(run.y + row) == all(run.y[row]) && LoadCoordinates(run.z + row) == all(run.z[row]);
}

}  // namespace

/// Commits leaves before rows are noted in them. Each of them has some.
class CellLookup::LeafPages {
public:
    LeafPages(std::uint32_t* leaves, std::size_t count, StopFlag stop)
        : count_(count), stop_(stop), pages_(leaves, count * leafSize) {}

    void Reach(std::size_t leaves) {
        // Where rows come in no order, the first ones may lie in all leaves.
        constexpr std::size_t atOnce = 32768;
        for (leaves = std::min(leaves, count_); reached_ < leaves;) {
            stop_.Check();
            reached_ += std::min(leaves - reached_, atOnce);
            pages_.Reach(reached_ * leafSize);
        }
    }

private:
    const std::size_t count_;
    const StopFlag stop_;
    PageCommitter pages_;
    std::size_t reached_ = 0;
};

/// Some thousand rows in a row, and the box that they span. Between two of them is a look at the flag: rows may be as
/// many as memory holds, and each may touch a page that the system has yet to give.
struct CellLookup::Part {
    CoordinateRun run;
    std::uint32_t firstRow;
    Box box;
    /// The number after those of the leaves that its rows, and those before, lie in.
    std::size_t leaves = 0;
};

std::vector<CellLookup::Part> CellLookup::Parts(std::span<const CoordinateRun> runs) {
    constexpr std::size_t usual = 8192;
    constexpr std::size_t most = 4096;  // At least of a run.
    std::vector<Part> parts;
    std::size_t row = 0;
    for (const CoordinateRun& run : runs) {
        const std::size_t size = std::max(usual, run.rows / most);
        for (std::size_t begin = 0; begin < run.rows; begin += size) {
            const std::size_t end = begin + std::min(size, run.rows - begin);
            parts.push_back({run.Part(begin, end), static_cast<std::uint32_t>(row + begin), {}});
        }
        row += run.rows;
    }
    return parts;
}

/// Finds the box of each part and of all rows: 0 to 0 when there are none.
bool CellLookup::Measure(std::vector<Part>& parts, StopFlag stop, unsigned int team) {
    ShareOut(team, parts.size(), [&](std::size_t i) {
        stop.Check();
        const CoordinateRun& run = parts[i].run;
        parts[i].box = {RangeOf(run.x, run.stride, run.rows), RangeOf(run.y, run.stride, run.rows),
                        RangeOf(run.z, run.stride, run.rows)};
    });
    Box all;
    for (const Part& part : parts) all.Add(part.box);
    if (parts.empty()) all = {{0, 0}, {0, 0}, {0, 0}};
    const auto size = [](const Range& range) { return static_cast<std::uint32_t>(range.most - range.least) + 1; };
    const std::uint64_t plane = std::uint64_t{size(all.x)} * size(all.y);
    volume_ = plane * size(all.z);
    if (volume_ > std::numeric_limits<std::uint32_t>::max()) return false;
    minX_ = all.x.least;
    minY_ = all.y.least;
    minZ_ = all.z.least;
    sizeX_ = size(all.x);
    sizeY_ = size(all.y);
    sizeZ_ = size(all.z);
    plane_ = static_cast<std::uint32_t>(plane);
    return true;
}

/// Gives every leaf that a row lies in a number from 1, in the order of the rows, so that neighbours in the file stay
/// neighbours in memory. Returns the last number.
std::size_t CellLookup::NumberLeaves(std::vector<Part>& parts, StopFlag stop) {
    std::uint32_t count = 0;
    for (Part& part : parts) {
        stop.Check();
        const CoordinateRun& run = part.run;
        for (std::size_t i = 0; i < run.rows; ++i) {
            const std::size_t at = i * run.stride;
            std::uint32_t& number = directory_[Cell(run.x[at], run.y[at], run.z[at]) / leafCells];
            if (number == 0) number = ++count;
        }
        part.leaves = std::size_t{count} + 1;
    }
    return count;
}

/// Numbers all leaves, as where rows lie in most of them. Returns the last number.
std::size_t CellLookup::NumberAllLeaves(std::vector<Part>& parts, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) directory_[i] = static_cast<std::uint32_t>(i + 1);
    for (Part& part : parts) part.leaves = std::size_t{LastCell(part)} / leafCells + 2;
    return count;
}

std::uint32_t CellLookup::FirstCell(const Part& part) const {
    return Cell(part.box.x.least, part.box.y.least, part.box.z.least);
}

std::uint32_t CellLookup::LastCell(const Part& part) const {
    return Cell(part.box.x.most, part.box.y.most, part.box.z.most);
}

/// Notes the rows of a part that lie in cells from `begin` to before `end`.
void CellLookup::NoteRows(const Part& part, std::uint32_t begin, std::uint32_t end) {
    const CoordinateRun& run = part.run;
    const bool all = FirstCell(part) >= begin && LastCell(part) < end;
    const auto place = [this](std::uint32_t cell) {
        return leaves_ + std::size_t{directory_[cell / leafCells]} * leafCells + cell % leafCells;
    };
    for (std::size_t i = 0; i < run.rows; ++i) {
        const std::size_t at = i * run.stride;
        const std::uint32_t cell = Cell(run.x[at], run.y[at], run.z[at]);
        const std::uint32_t row = part.firstRow + static_cast<std::uint32_t>(i) + 1;
        if (!all && (cell < begin || cell >= end)) continue;
        if (all && run.stride == 1 && run.rows - i >= inLine && cell % leafCells <= leafCells - inLine &&
            LieInLine(run, i)) {
            const std::uint32_t rows[inLine] = {row, row + 1, row + 2, row + 3};
            std::memcpy(place(cell), rows, sizeof rows);
            i += inLine - 1;
        } else {
            *place(cell) = row;
        }
    }
}

bool CellLookup::Build(std::span<const CoordinateRun> runs, StopFlag stop, unsigned int threads) {
    // Fewer rows take no longer than threads to start.
    constexpr std::size_t leastRows = std::size_t{1} << 17U;
    std::vector<Part> parts = Parts(runs);
    const std::size_t rows = parts.empty() ? 0 : parts.back().firstRow + parts.back().run.rows;
    const unsigned int team = rows < leastRows ? 1 : threads;
    if (!Measure(parts, stop, team)) return false;
    const auto entries = static_cast<std::size_t>((volume_ + leafCells - 1) / leafCells);
    directoryBuffer_ = AllocateZeroed(entries, sizeof(std::uint32_t));
    if (!directoryBuffer_) return false;
    directory_ = reinterpret_cast<std::uint32_t*>(directoryBuffer_.get());
    // In a box that is half full it does not pay to find out which leaves are empty.
    const bool dense = volume_ / 2 <= rows;
    const std::size_t count = dense ? NumberAllLeaves(parts, entries) : NumberLeaves(parts, stop);
    leavesBuffer_ = AllocateToFill(count + 1, leafSize);
    if (!leavesBuffer_) return false;
    leaves_ = reinterpret_cast<std::uint32_t*>(leavesBuffer_.get());

    // Each member has cells of its own, so that of several rows for a cell the last one is the last to be noted.
    const std::uint64_t slab = volume_ / team + 1;
    ShareOut(team, team, [&](std::size_t i) {
        const std::uint64_t begin = i * slab;
        const auto end = static_cast<std::uint32_t>(std::min(begin + slab, volume_));
        // In a box that is not dense, leaves of one member lie between those of others.
        const std::size_t firstLeaf = dense ? static_cast<std::size_t>(begin / leafCells) + 1 : 0;
        const std::size_t lastLeaf = dense ? (end - 1) / leafCells + 1 : team == 1 ? count : 0;
        LeafPages pages(leaves_ + firstLeaf * leafCells, lastLeaf + 1 - firstLeaf, stop);
        for (const Part& part : parts) {
            stop.Check();
            if (FirstCell(part) >= end || LastCell(part) < begin) continue;
            pages.Reach(part.leaves - firstLeaf);
            NoteRows(part, static_cast<std::uint32_t>(begin), end);
        }
    });
    return true;
}

}  // namespace orvalo
