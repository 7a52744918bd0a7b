#include "CellBlocks.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

namespace {

void AppendVarint(std::string& bytes, std::uint64_t number) {
    for (; number >= 0x80; number >>= 7U) bytes += static_cast<char>((number & 0x7FU) | 0x80U);
    bytes += static_cast<char>(number);
}

/// Alternates between the signs.
void AppendSigned(std::string& bytes, std::int64_t number) {
    const std::uint64_t magnitude = static_cast<std::uint64_t>(number < 0 ? -(number + 1) : number);
    AppendVarint(bytes, magnitude * 2 + (number < 0 ? 1 : 0));
}

std::uint64_t PlaceOf(const orvalo::Point& cell, const GridRegion& box) {
    const auto distance = [](int from, int to) { return static_cast<std::uint64_t>(to - from); };
    const std::uint64_t row = distance(box.first.z, cell.z) * box.sizeY + distance(box.first.y, cell.y);
    return row * box.sizeX + distance(box.first.x, cell.x);
}

}  // namespace

std::string EncodeRuns(const SortedCells& cells, const GridRegion& box,
                       const std::function<unsigned int(std::size_t)>& codeOf) {
    std::string bytes;
    std::uint64_t end = 0;
    for (std::size_t i = 0; i < cells.Count();) {
        const std::uint64_t start = PlaceOf(cells[i].cell, box);
        const unsigned int code = codeOf(i);
        std::size_t length = 1;
        while (i + length < cells.Count() && PlaceOf(cells[i + length].cell, box) == start + length &&
               codeOf(i + length) == code) {
            ++length;
        }
        AppendVarint(bytes, start - end);
        AppendVarint(bytes, length);
        AppendVarint(bytes, code);
        end = start + length;
        i += length;
    }
    return bytes;
}

std::string EncodeRows(const SortedCells& cells) {
    std::string bytes;
    std::int64_t last = 0;
    std::int64_t step = 0;
    for (std::size_t i = 0; i < cells.Count(); ++i) {
        const auto& [damping, cube] = cells[i].records;
        const std::int64_t row = static_cast<std::int64_t>(cube != CellRow::none ? cube : damping) + 1;
        AppendSigned(bytes, row - last - step);
        step = row - last;
        last = row;
    }
    return bytes;
}
