#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include <fmt/format.h>

#include <Orvalo3DReader/Model/Model.h>

#include "HarmlessText.h"
#include "ModelNames.h"
#include "ModelSummary.h"
#include "SummaryLines.h"

namespace {

constexpr std::size_t maxMaterials = 255;

std::string ToText(const orvalo::Point& point) {
    return fmt::format("({}, {}, {})", point.x, point.y, point.z);
}

std::string ToText(const ModelSummary::Range& range) {
    return fmt::format("{:.6g} to {:.6g}", range.least, range.greatest);
}

std::string ToText(const ModelSummary::Excitation& excitation) {
    return fmt::format("{} samples, {:.6g} us, from {:.6g} us", excitation.samples, excitation.duration,
                       excitation.start);
}

void AddGrid(SummaryLines& lines, const orvalo::Model& model, const ModelSummary& summary) {
    const auto& [x, y, z] = summary.box;
    const char* cells = model.cubes.DampingCubesCount() > 0 ? "cells, damping included" : "cubes";
    lines.Add("grid", fmt::format("{} x {} x {} {} (x {}..{}, y {}..{}, z {}..{})", x.cubes, y.cubes, z.cubes, cells,
                                  x.first, x.last, y.first, y.last, z.first, z.last));
    if (!summary.cubesOnly) {
        lines.Add("", fmt::format("{:.6g} x {:.6g} x {:.6g} in length, cell size {:.6g}", x.cubes * model.cellSize,
                                  y.cubes * model.cellSize, z.cubes * model.cellSize, model.cellSize));
    }
    lines.Add("cubes", fmt::format("{}", model.cubes.CubesCount()));
}

std::string MaterialText(const ModelSummary::MaterialUse& material, std::size_t nameWidth, double roomTemperature) {
    std::string text = fmt::format("#{:<4}", material.number);
    if (material.properties) text += fmt::format("{:<{}}", Harmless(material.properties->name), nameWidth);
    text += fmt::format("{:>10} cubes", material.cubes);
    if (material.properties) {
        text += fmt::format("  vp {:<10.6g} vs {:<10.6g}", material.properties->vp, material.properties->vs);
        text += material.properties->temperatureDependent ? fmt::format(" (at {:.6g} deg C)", roomTemperature) : "";
    }
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

void AddMaterials(SummaryLines& lines, const orvalo::Model& model, const ModelSummary& summary) {
    std::size_t nameWidth = 0;
    for (const auto& material : summary.materials) {
        if (material.properties && material.cubes > 0)
            nameWidth = std::max(nameWidth, material.properties->name.size());
    }
    std::vector<std::string> texts;
    for (const auto& material : summary.materials) {
        if (material.cubes > 0) texts.push_back(MaterialText(material, nameWidth, model.roomTemperature));
    }
    lines.AddList("materials", texts, maxMaterials);
}

void AddGridValues(SummaryLines& lines, const orvalo::Model& model, const ModelSummary& summary) {
    if (summary.temperatures) lines.Add("temperatures", ToText(*summary.temperatures) + " deg C");
    if (summary.dampingCoefficients) {
        lines.Add("damping", fmt::format("{} cubes, coefficients {}", model.cubes.DampingCubesCount(),
                                         ToText(*summary.dampingCoefficients)));
    }
}

std::string DirectionText(const orvalo::Actuator& actuator) {
    const std::string letters = DirectionLetters(actuator);
    return letters.empty() ? "no direction" : "along " + letters;
}

std::string SignalText(const orvalo::Actuator& actuator) {
    if (actuator.tableId > 0) return fmt::format("table {}", actuator.tableId);
    const orvalo::Actuator::Definition& signal = actuator.definition;
    std::string text = fmt::format("{} {}", TypeName(signal.type), WaveformName(signal.waveform));
    if (signal.type == orvalo::ActuatorTypeContinuousWave) text += fmt::format(" of {:.6g} kHz", signal.frequency);
    if (signal.envelope != orvalo::ActuatorEnvelopeNone) text += ", " + EnvelopeName(signal.envelope);
    return text;
}

void AddExcitations(SummaryLines& lines, const orvalo::Model& model, const ModelSummary& summary) {
    std::vector<std::string> texts;
    for (std::size_t i = 0; i < model.actuators.size(); ++i) {
        const orvalo::Actuator& actuator = model.actuators[i];
        texts.push_back(fmt::format("{} at {}, {}, {}: {}", MethodName(actuator.method),
                                    ToText(actuator.shared.position), DirectionText(actuator), SignalText(actuator),
                                    ToText(summary.actuators[i])));
    }
    lines.AddList("actuators", texts);
    texts.clear();
    for (std::size_t i = 0; i < model.piezos.size(); ++i) {
        const orvalo::Piezo& piezo = *model.piezos[i];
        texts.push_back(fmt::format("#{} {} at {}, axis {}, {} points, {} tables: {}", piezo.shared.id,
                                    MethodName(piezo.method), ToText(piezo.shared.position), ToText(piezo.direction),
                                    piezo.data.Cells().size(), piezo.tables.size(), ToText(summary.piezos[i])));
    }
    lines.AddList("piezo", texts);
}

void AddOutputs(SummaryLines& lines, const orvalo::Model& model) {
    std::vector<std::string> texts;
    for (const auto& [id, sensor] : model.sensors) {
        texts.push_back(fmt::format("#{} at {}: {} to {}", id, ToText(sensor.shared.position), sensor.output,
                                    Harmless(sensor.file.fileName)));
    }
    lines.AddList("sensors", texts);
    texts.clear();
    for (const auto& [id, dump] : model.dumps) {
        texts.push_back(fmt::format("#{}: {} to {}", id, dump.output, Harmless(dump.file.fileName)));
    }
    lines.AddList("dumps", texts);
}

void AddTablesAndSets(SummaryLines& lines, const orvalo::Model& model) {
    std::vector<std::string> texts;
    for (const auto& [id, table] : model.tables) {
        if (id > 0) texts.push_back(fmt::format("#{}: {} samples", id, table->count));
    }
    lines.AddList("tables", texts);
    texts.clear();
    for (const auto& [id, set] : model.sets) texts.push_back(fmt::format("#{}: {} points", id, set->count));
    lines.AddList("sets", texts);
}

}  // namespace

std::string ToText(const orvalo::Model& model, const ModelSummary& summary) {
    SummaryLines lines;
    AddGrid(lines, model, summary);
    AddMaterials(lines, model, summary);
    AddGridValues(lines, model, summary);
    if (summary.cubesOnly) return lines.Text();
    lines.Add("time step", fmt::format("{:.6g} us, start at {:.6g} us", summary.timeStep, summary.startTime));
    AddExcitations(lines, model, summary);
    AddOutputs(lines, model);
    AddTablesAndSets(lines, model);
    return lines.Text();
}
