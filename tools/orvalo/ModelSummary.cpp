#include "ModelSummary.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include <Orvalo3DReader/Model/Model.h>

#include "MaterialCounts.h"

namespace {

ModelSummary::Axis MakeAxis(short first, short last, bool defined) {
    return {first, last, defined ? last - first + 1 : 0};
}

std::vector<ModelSummary::UsedMaterial> UsedMaterials(const orvalo::Model& model, bool cubesOnly) {
    std::vector<ModelSummary::UsedMaterial> used;
    const MaterialCounts counts = CountMaterials(model.cubes);
    for (int i = 0; i < static_cast<int>(counts.size()); ++i) {
        const std::size_t cubes = counts[static_cast<std::size_t>(i)];
        if (cubes == 0) continue;
        ModelSummary::UsedMaterial material{cubesOnly ? i : model.materials.Vec2File(i), cubes, std::nullopt, false};
        if (!cubesOnly) {
            const orvalo::Material& defined = model.materials[i];
            material.temperatureDependent = defined.temperatureDependent;
            material.properties =
                defined.temperatureDependent ? orvalo::Material(defined, model.roomTemperature) : defined;
            material.properties->name = defined.name;
        }
        used.push_back(material);
    }
    std::sort(used.begin(), used.end(), [](const auto& a, const auto& b) { return a.number < b.number; });
    return used;
}

std::optional<ModelSummary::Range> TemperatureRange(const orvalo::Cubes& cubes) {
    const double* first = cubes.TemperaturesPtr();
    if (first == nullptr || cubes.CubesCount() == 0) return std::nullopt;
    const auto [least, greatest] = std::minmax_element(first, first + cubes.CubesCount());
    return ModelSummary::Range{*least, *greatest};
}

std::optional<ModelSummary::Range> DampingRange(const orvalo::Cubes& cubes) {
    std::optional<ModelSummary::Range> range;
    for (const orvalo::DampingCube cube : cubes.DampingRecords()) {
        if (!range) range = {cube.coefficient, cube.coefficient};
        range->least = std::min(range->least, cube.coefficient);
        range->greatest = std::max(range->greatest, cube.coefficient);
    }
    return range;
}

ModelSummary::Excitation MakeExcitation(std::size_t samples, int negatedStartStep, double timeStep) {
    const double microseconds = timeStep * 1e6;
    const auto startStep = static_cast<double>(-static_cast<std::int64_t>(negatedStartStep));
    return {samples, startStep * microseconds, static_cast<double>(samples) * microseconds};
}

}  // namespace

ModelSummary Summarize(const orvalo::Model& model, bool cubesOnly) {
    ModelSummary summary;
    summary.cubesOnly = cubesOnly;
    const orvalo::Bounds& bounds = model.bounds;
    summary.box = {MakeAxis(bounds.minX, bounds.maxX, bounds.defined),
                   MakeAxis(bounds.minY, bounds.maxY, bounds.defined),
                   MakeAxis(bounds.minZ, bounds.maxZ, bounds.defined)};
    summary.materials = UsedMaterials(model, cubesOnly);
    summary.temperatures = TemperatureRange(model.cubes);
    summary.dampingCoefficients = DampingRange(model.cubes);
    for (const orvalo::Actuator& actuator : model.actuators) {
        const std::size_t samples = actuator.table == nullptr ? 0 : actuator.table->count;
        summary.actuators.push_back(MakeExcitation(samples, actuator.start, model.timeStep));
    }
    for (const auto& piezo : model.piezos) {
        summary.piezos.push_back(MakeExcitation(piezo->samplesCount, piezo->start, model.timeStep));
    }
    return summary;
}
