#include "CellData.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <type_traits>
#include <utility>

namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

template <class Number>
void Scatter(const double* values, const std::size_t* places, std::size_t count, Number* out) {
    for (std::size_t i = 0; i < count; ++i) {
        if (places[i] != GridSlab::none) out[places[i]] = static_cast<Number>(values[i]);
    }
}

/// Calls `work` with the target as numbers of its own type.
template <class Work>
void WithNumbers(const CellData::Target& target, const Work& work) {
    if (target.field->type == NumberType::uint8) {
        work(target.out);
    } else {
        // Buffers come from the allocator, which aligns them for every number.
        work(reinterpret_cast<double*>(target.out));
    }
}

/// A function that stores what `at` gives of some successive records.
template <class Item, class At>
auto Batch(const At& at) {
    return [at](std::size_t first, std::size_t count, Item* out) {
        for (std::size_t i = 0; i < count; ++i) out[i] = at(first + i);
    };
}

template <class At>
auto Values(const At& at) {
    return Batch<double>(at);
}

auto Constant(double value) {
    return [value](std::size_t, std::size_t count, double* out) { std::fill_n(out, count, value); };
}

/// The cells of packed records.
template <class Records>
CellRecords CellsOf(const Records& records) {
    return {records.size(), Batch<orvalo::Point>([records](std::size_t i) {
                const auto record = records[i];
                return orvalo::Point{record.x, record.y, record.z};
            })};
}

}  // namespace

std::size_t SizeOf(NumberType type) {
    return type == NumberType::uint8 ? sizeof(std::uint8_t) : sizeof(double);
}

const char* VtkName(NumberType type) {
    constexpr const char* names[] = {"UInt8", "Int64", "Float64"};
    return names[static_cast<int>(type)];
}

CellRecords::CellRecords(std::size_t count, Cells cells) : count_(count), cells_(std::move(cells)) {
    std::array<orvalo::Point, atOnce> portion;
    for (std::size_t first = 0; first < count; first += atOnce) {
        const std::size_t size = std::min(atOnce, count - first);
        cells_(first, size, portion.data());
        Zone zone;
        for (std::size_t i = 0; i < size; ++i) {
            zone.first = std::min<int>(zone.first, portion[i].z);
            zone.last = std::max<int>(zone.last, portion[i].z);
        }
        zones_.push_back(zone);
    }
}

void CellData::Fill(const std::vector<Target>& targets, const GridSlab& slab) const {
    for (const Target& target : targets) {
        WithNumbers(target, [&](auto* out) {
            using Number = std::remove_pointer_t<decltype(out)>;
            std::fill_n(out, slab.Cells(), static_cast<Number>(target.field->none));
        });
    }
    std::array<std::size_t, CellRecords::atOnce> places;
    std::array<double, CellRecords::atOnce> values;
    for (std::size_t list = 0; list < lists.size(); ++list) {
        const auto take = [&](std::size_t first, std::size_t count, const auto& cells) {
            for (std::size_t i = 0; i < count; ++i) places[i] = slab.Find(cells[i].x, cells[i].y, cells[i].z);
            for (const Target& target : targets) {
                for (const CellField::Layer& layer : target.field->layers) {
                    if (layer.list != list) continue;
                    layer.values(first, count, values.data());
                    WithNumbers(target, [&](auto* out) { Scatter(values.data(), places.data(), count, out); });
                }
            }
        };
        lists[list].ForEachNear(slab.FirstZ(), slab.LastZ(), take);
    }
}

CellData CellDataOf(const orvalo::Model& model, bool cubesOnly) {
    CellData data;
    data.box = model.bounds;
    data.cellSize = model.cellSize;
    const auto damping = model.cubes.DampingRecords();
    const auto cubes = model.cubes.Records();
    data.lists.push_back(CellsOf(damping));
    data.lists.push_back(CellsOf(cubes));
    std::array<double, 256> numbers{};
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        const int index = static_cast<int>(i);
        numbers[i] = cubesOnly ? index : model.materials.Vec2File(index);
    }
    const auto materialOf = [&numbers](const auto& records) {
        return Values([numbers, records](std::size_t i) { return numbers[records[i].material]; });
    };
    data.fields.push_back({"material", NumberType::uint8, 0, {{0, materialOf(damping)}, {1, materialOf(cubes)}}});
    data.fields.push_back({"exists", NumberType::uint8, 0, {{0, Constant(2)}, {1, Constant(1)}}});
    if (const double* temperatures = model.cubes.TemperaturesPtr()) {
        const auto temperature = Values([temperatures](std::size_t i) { return temperatures[i]; });
        data.fields.push_back({"temperature", NumberType::float64, notANumber, {{1, temperature}}});
    }
    if (!damping.empty()) {
        const auto coefficient = Values([damping](std::size_t i) { return damping[i].coefficient; });
        data.fields.push_back({"damping", NumberType::float64, notANumber, {{0, coefficient}}});
    }
    return data;
}

CellData CellDataOf(const ResultsSelection& selection, double cellSize) {
    CellData data;
    data.cellSize = cellSize;
    const auto cell = [&selection](std::size_t i) { return selection.Table().Cell(selection.Row(i)); };
    for (std::size_t i = 0; i < selection.Rows(); ++i) {
        const orvalo::Point point = cell(i);
        data.box.Update(point.x, point.y, point.z);
    }
    data.lists.emplace_back(selection.Rows(), Batch<orvalo::Point>(cell));
    data.fields.push_back({"exists", NumberType::uint8, 0, {{0, Constant(1)}}});
    const std::vector<std::string> names = selection.UniqueNames();
    for (std::size_t column = 0; column < names.size(); ++column) {
        const std::string& name = names[column] == "exists" ? names[column] + "_2" : names[column];
        const auto value = Values([&selection, column](std::size_t i) { return selection.Value(column, i); });
        data.fields.push_back({name, NumberType::float64, notANumber, {{0, value}}});
    }
    return data;
}
