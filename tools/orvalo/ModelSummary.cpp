#include "ModelSummary.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <vector>

#include <fmt/format.h>

#include <Orvalo3DReader/Model/Model.h>

#include "MaterialCounts.h"

namespace {

ModelSummary::Axis MakeAxis(short first, short last, bool defined) {
    return {first, last, defined ? last - first + 1 : 0};
}

std::vector<ModelSummary::MaterialUse> MaterialUses(const orvalo::Model& model, bool cubesOnly) {
    std::vector<ModelSummary::MaterialUse> uses;
    const MaterialCounts counts = CountMaterials(model.cubes);
    const int defined = static_cast<int>(model.materials.Count());
    for (int i = 0; i < static_cast<int>(counts.size()); ++i) {
        const std::size_t cubes = counts[static_cast<std::size_t>(i)];
        const bool fromFile = !cubesOnly && i > 0 && i < defined;
        if (cubes == 0 && !fromFile) continue;
        ModelSummary::MaterialUse use{cubesOnly ? i : model.materials.Vec2File(i), cubes, std::nullopt};
        if (!cubesOnly) {
            const orvalo::Material& material = model.materials[i];
            use.properties = material;
            if (material.temperatureDependent) {
                const orvalo::Material atRoom(material, model.roomTemperature);
                use.properties->vp = atRoom.vp;
                use.properties->vs = atRoom.vs;
                use.properties->density = atRoom.density;
                use.properties->mu = atRoom.mu;
                use.properties->lambda = atRoom.lambda;
            }
        }
        uses.push_back(use);
    }
    std::sort(uses.begin(), uses.end(), [](const auto& a, const auto& b) { return a.number < b.number; });
    return uses;
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

/// What is left of a number without the last digits that arithmetic has spoilt.
double Rounded(double number) {
    constexpr int safeDigits = 15;
    return std::strtod(fmt::format("{:.{}g}", number, safeDigits).c_str(), nullptr);
}

/// The microseconds of which the library made these seconds, with the fewest digits.
double ToMicroseconds(double seconds) {
    const double exact = seconds * 1e6;
    const double rounded = Rounded(exact);
    for (const double candidate : {rounded, std::nextafter(rounded, exact), exact}) {
        if (candidate * 1e-6 == seconds) return candidate;
    }
    return exact;
}

ModelSummary::Excitation MakeExcitation(std::size_t samples, int negatedStartStep, double timeStep) {
    const auto startStep = static_cast<double>(-static_cast<std::int64_t>(negatedStartStep));
    return {samples, Rounded(startStep * timeStep), Rounded(static_cast<double>(samples) * timeStep)};
}

}  // namespace

ModelSummary Summarize(const orvalo::Model& model, bool cubesOnly) {
    ModelSummary summary;
    summary.cubesOnly = cubesOnly;
    summary.timeStep = ToMicroseconds(model.timeStep);
    summary.startTime = ToMicroseconds(model.startTime);
    const orvalo::Bounds& bounds = model.bounds;
    summary.box = {MakeAxis(bounds.minX, bounds.maxX, bounds.defined),
                   MakeAxis(bounds.minY, bounds.maxY, bounds.defined),
                   MakeAxis(bounds.minZ, bounds.maxZ, bounds.defined)};
    summary.materials = MaterialUses(model, cubesOnly);
    summary.temperatures = TemperatureRange(model.cubes);
    summary.dampingCoefficients = DampingRange(model.cubes);
    for (const orvalo::Actuator& actuator : model.actuators) {
        const std::size_t samples = actuator.table == nullptr ? 0 : actuator.table->count;
        summary.actuators.push_back(MakeExcitation(samples, actuator.start, summary.timeStep));
    }
    for (const auto& piezo : model.piezos) {
        summary.piezos.push_back(MakeExcitation(piezo->samplesCount, piezo->start, summary.timeStep));
    }
    return summary;
}
