#include "Results/CellLookup.h"

#include <algorithm>
#include <limits>

#include "Common/Buffers.h"

namespace orvalo {

namespace {

struct Range {
    int least = 0;
    int most = 0;
    std::uint32_t Size() const { return static_cast<std::uint32_t>(most - least) + 1; }
};

/// Calls `work` for all rows in parts of runs, and looks at the flag before each: rows may be as many as memory holds,
/// and each may touch a page that the system has yet to give.
template <class Work>
void ForEachPart(std::span<const CoordinateRun> runs, StopFlag stop, const Work& work) {
    constexpr std::size_t piece = 8192;
    for (const CoordinateRun& run : runs) {
        stop.CheckEach(piece, run.rows, [&](std::size_t begin, std::size_t end) { work(run.Part(begin, end)); });
    }
}

/// The range of one coordinate over all rows; 0 to 0 when there are none.
Range RangeOf(std::span<const CoordinateRun> runs, const short* CoordinateRun::*coordinate, StopFlag stop) {
    short smallestOfAll = std::numeric_limits<short>::max();
    short largestOfAll = std::numeric_limits<short>::min();
    ForEachPart(runs, stop, [&](const CoordinateRun& run) {
        const short* const values = run.*coordinate;
        short least = smallestOfAll;
        short most = largestOfAll;
        // The one stride known to the compiler lets it take many rows at once.
        if (run.stride == 1) {
            for (std::size_t i = 0; i < run.rows; ++i) {
                least = std::min(least, values[i]);
                most = std::max(most, values[i]);
            }
        } else {
            for (std::size_t i = 0; i < run.rows; ++i) {
                least = std::min(least, values[i * run.stride]);
                most = std::max(most, values[i * run.stride]);
            }
        }
        smallestOfAll = least;
        largestOfAll = most;
    });
    return smallestOfAll > largestOfAll ? Range{} : Range{smallestOfAll, largestOfAll};
}

}  // namespace

bool CellLookup::Measure(std::span<const CoordinateRun> runs, StopFlag stop) {
    const Range x = RangeOf(runs, &CoordinateRun::x, stop);
    const Range y = RangeOf(runs, &CoordinateRun::y, stop);
    const Range z = RangeOf(runs, &CoordinateRun::z, stop);
    const std::uint64_t plane = std::uint64_t{x.Size()} * y.Size();
    volume_ = plane * z.Size();
    if (volume_ > std::numeric_limits<std::uint32_t>::max()) return false;
    minX_ = x.least;
    minY_ = y.least;
    minZ_ = z.least;
    sizeX_ = x.Size();
    sizeY_ = y.Size();
    sizeZ_ = z.Size();
    plane_ = static_cast<std::uint32_t>(plane);
    return true;
}

/// Gives every leaf that a row lies in a number from 1, in the order of the rows, so that neighbours in the file stay
/// neighbours in memory. Returns the last number.
std::size_t CellLookup::NumberLeaves(std::span<const CoordinateRun> runs, StopFlag stop) {
    std::uint32_t count = 0;
    ForEachPart(runs, stop, [&](const CoordinateRun& run) {
        for (std::size_t i = 0; i < run.rows; ++i) {
            const std::size_t at = i * run.stride;
            std::uint32_t& number = directory_[Cell(run.x[at], run.y[at], run.z[at]) / leafCells];
            if (number == 0) number = ++count;
        }
    });
    return count;
}

bool CellLookup::Build(std::span<const CoordinateRun> runs, StopFlag stop) {
    if (!Measure(runs, stop)) return false;
    const std::uint64_t entries = (volume_ + leafCells - 1) / leafCells;
    directoryBuffer_ = AllocateZeroed(entries, sizeof(std::uint32_t));
    if (!directoryBuffer_) return false;
    directory_ = reinterpret_cast<std::uint32_t*>(directoryBuffer_.get());
    leavesBuffer_ = AllocateToFill(NumberLeaves(runs, stop) + 1, leafCells * sizeof(std::uint32_t));
    if (!leavesBuffer_) return false;
    leaves_ = reinterpret_cast<std::uint32_t*>(leavesBuffer_.get());

    std::uint32_t row = 0;
    ForEachPart(runs, stop, [&](const CoordinateRun& run) {
        for (std::size_t i = 0; i < run.rows; ++i) {
            const std::size_t at = i * run.stride;
            const std::uint32_t cell = Cell(run.x[at], run.y[at], run.z[at]);
            leaves_[std::size_t{directory_[cell / leafCells]} * leafCells + cell % leafCells] = ++row;
        }
    });
    return true;
}

}  // namespace orvalo
