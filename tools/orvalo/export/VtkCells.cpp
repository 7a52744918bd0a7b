#include "VtkCells.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>
#include <vector>

#include <fmt/format.h>

#include "export/OutputFile.h"
#include "export/SortedCells.h"
#include "export/VtkFile.h"

namespace {

/// Corners of a plane of constant z: y and x, which may be one more than a coordinate of a cell.
using Corner = std::uint64_t;
constexpr unsigned int cornerBits = 17;

Corner CornerOf(const orvalo::Point& cell) {
    constexpr int offset = 32768;
    const int x = cell.x + offset;
    const int y = cell.y + offset;
    return (static_cast<Corner>(y) << cornerBits) | static_cast<Corner>(x);
}
constexpr Corner stepX = 1;
constexpr Corner stepY = Corner{1} << cornerBits;

using Corners = std::vector<Corner>;

Corners Union(const Corners& a, const Corners& b) {
    Corners both;
    std::set_union(a.begin(), a.end(), b.begin(), b.end(), std::back_inserter(both));
    return both;
}

Corners Moved(Corners corners, Corner step) {
    for (Corner& corner : corners) corner += step;
    return corners;
}

/// The lower corners of the cells of a plane, or the upper ones, which are the same.
Corners CornersOf(const SortedCells& cells, const SortedCells::Plane& plane) {
    Corners corners;
    for (std::size_t i = plane.first; i < plane.end; ++i) corners.push_back(CornerOf(cells[i].cell));
    corners = Union(corners, Moved(corners, stepX));
    return Union(corners, Moved(corners, stepY));
}

/// Calls `work` with each plane of corners, in ascending order: its z, its corners, the number of its first corner, and
/// the planes of cells below and above it, null where there is none.
template <class Work>
std::uint64_t ForEachCornerPlane(const SortedCells& cells, const Work& work) {
    using Plane = SortedCells::Plane;
    std::uint64_t number = 0;
    const Plane* below = nullptr;
    Corners ofBelow;
    const auto finish = [&](int z, const Plane* above, const Corners& ofAbove) {
        const Corners corners = below == nullptr ? ofAbove : Union(ofBelow, ofAbove);
        work(z, corners, number, below, above);
        number += corners.size();
    };
    for (const Plane& plane : cells.Planes()) {
        Corners corners = CornersOf(cells, plane);
        if (below != nullptr && below->z + 1 != plane.z) {
            finish(below->z + 1, nullptr, {});
            below = nullptr;
        }
        finish(plane.z, &plane, corners);
        below = &plane;
        ofBelow = std::move(corners);
    }
    if (below != nullptr) finish(below->z + 1, nullptr, {});
    return number;
}

/// Hands numbers to a file, some at a time.
template <class Number>
class ArrayWriter {
public:
    ArrayWriter(VtkFile& file, std::uint64_t count) : file_(file) { file.BeginArray(count * sizeof(Number)); }

    void Add(Number number) {
        numbers_.push_back(number);
        if (numbers_.size() == atOnce) Flush();
    }
    void Finish() {
        Flush();
        file_.EndArray();
    }

private:
    static constexpr std::size_t atOnce = 8192;

    void Flush() {
        file_.Data(numbers_.data(), numbers_.size() * sizeof(Number));
        numbers_.clear();
    }

    VtkFile& file_;
    std::vector<Number> numbers_;
};

void WriteCorners(VtkFile& file, const SortedCells& cells, std::uint64_t count, double cellSize) {
    ArrayWriter<double> points(file, 3 * count);
    ForEachCornerPlane(cells, [&](int z, const Corners& corners, std::uint64_t, const auto*, const auto*) {
        constexpr int offset = 32768;
        for (const Corner corner : corners) {
            points.Add((static_cast<int>(corner & (stepY - 1)) - offset) * cellSize);
            points.Add((static_cast<int>(corner >> cornerBits) - offset) * cellSize);
            points.Add(z * cellSize);
        }
    });
    points.Finish();
}

/// Finds corners that are asked for in ascending order.
class CornerCursor {
public:
    CornerCursor(const Corners& corners, std::uint64_t first, Corner step)
        : corners_(&corners), first_(first), step_(step) {}
    std::int64_t Number(Corner lower) {
        while ((*corners_)[at_] != lower + step_) ++at_;
        return static_cast<std::int64_t>(first_ + at_);
    }

private:
    const Corners* corners_;
    std::uint64_t first_;
    Corner step_;
    std::size_t at_ = 0;
};

void WriteConnectivity(VtkFile& file, const SortedCells& cells) {
    ArrayWriter<std::int64_t> numbers(file, 8 * cells.Count());
    constexpr std::array<Corner, 4> steps = {0, stepX, stepY, stepX + stepY};
    Corners lower;
    std::uint64_t lowerFirst = 0;
    ForEachCornerPlane(cells, [&](int, const Corners& corners, std::uint64_t first, const SortedCells::Plane* below,
                                  const SortedCells::Plane*) {
        if (below != nullptr) {
            std::vector<CornerCursor> cursors;
            cursors.reserve(steps.size());
            for (const Corner step : steps) cursors.emplace_back(lower, lowerFirst, step);
            for (const Corner step : steps) cursors.emplace_back(corners, first, step);
            for (std::size_t i = below->first; i < below->end; ++i) {
                for (CornerCursor& cursor : cursors) numbers.Add(cursor.Number(CornerOf(cells[i].cell)));
            }
        }
        lower = corners;
        lowerFirst = first;
    });
    numbers.Finish();
}

template <class Number, class At>
void WriteNumbers(VtkFile& file, std::size_t count, const At& at) {
    ArrayWriter<Number> numbers(file, count);
    for (std::size_t i = 0; i < count; ++i) numbers.Add(static_cast<Number>(at(i)));
    numbers.Finish();
}

}  // namespace

void WriteVtkCells(const CellData& data, const std::string& path, const ExportOptions& options,
                   ExportProgress& progress) {
    const SortedCells cells(data);
    std::uint64_t points = 0;
    points = ForEachCornerPlane(cells, [](auto&&...) {});
    progress.total = data.fields.size() + 4;
    OutputFile out(path, options.overwrite);
    VtkFile file(out, "UnstructuredGrid", options.compress, options.threads);
    file.Xml(fmt::format("<UnstructuredGrid>\n<Piece NumberOfPoints=\"{}\" NumberOfCells=\"{}\">\n<Points>\n", points,
                         cells.Count()));
    file.Declare("corners", NumberType::float64, 3);
    file.Xml("</Points>\n<Cells>\n");
    file.Declare("connectivity", NumberType::int64);
    file.Declare("offsets", NumberType::int64);
    file.Declare("types", NumberType::uint8);
    file.Xml(fmt::format("</Cells>\n<CellData Scalars=\"{}\">\n", XmlText(data.fields.front().name)));
    for (const CellField& field : data.fields) file.Declare(field.name, field.type);
    file.Xml("</CellData>\n</Piece>\n</UnstructuredGrid>\n");
    file.Begin();
    WriteCorners(file, cells, points, data.cellSize);
    ++progress.done;
    WriteConnectivity(file, cells);
    ++progress.done;
    WriteNumbers<std::int64_t>(file, cells.Count(), [](std::size_t i) { return 8 * (i + 1); });
    ++progress.done;
    constexpr int voxel = 11;
    WriteNumbers<std::uint8_t>(file, cells.Count(), [](std::size_t) { return voxel; });
    for (const CellField& field : data.fields) {
        ++progress.done;
        const auto at = [&](std::size_t i) { return cells[i].Value(field).value_or(field.none); };
        if (field.type == NumberType::uint8) {
            WriteNumbers<std::uint8_t>(file, cells.Count(), at);
        } else {
            WriteNumbers<double>(file, cells.Count(), at);
        }
    }
    file.End();
    out.Commit();
}
