#include <algorithm>
#include <bitset>
#include <cmath>

#include "Check/Warnings.h"

namespace orvalo {

namespace {

/// Where a material is defined.
const PropertyRecord* DefinitionOf(const Warnings& warnings, int number) {
    for (const SectionRecord& section : warnings.Record().sections) {
        if (section.section->word != "materials") continue;
        for (const PropertyRecord& row : section.properties) {
            if (row.valueType == TokenType::Number && std::trunc(row.value) == number) return &row;
        }
    }
    return nullptr;
}

/// The vector indices of the materials of some cells.
std::bitset<256> UsedMaterials(const Warnings& warnings, bool withDamping) {
    std::bitset<256> used;
    for (const GridPart& part : warnings.grid) {
        if (withDamping || part.section->section->word == "cubes") used |= part.cells.survey.materials;
    }
    return used;
}

void WarnOfTemperatures(Warnings& warnings) {
    const Model& model = warnings.model;
    const bool given = model.cubes.TemperaturesPtr() != nullptr;
    const std::bitset<256> used = UsedMaterials(warnings, false);
    for (int index = 1; index < static_cast<int>(model.materials.Count()); ++index) {
        const bool wanted = model.materials.TemperatureDependent(index);
        if (!used[static_cast<std::size_t>(index)] || wanted == given) continue;
        MaterialRepository noted = model.materials;
        noted.ClearTemperaturesInfo();
        if (wanted) {
            noted.SetTempMissing(index);
        } else {
            noted.SetTempIgnored(index);
        }
        noted.PrepareWarnings(model.roomTemperature);
        std::string message = noted.GetWarnings();
        message.erase(message.find_last_not_of('\n') + 1);
        const SectionRecord& cubes = *warnings.grid.front().section;
        const PropertyRecord* const definition = DefinitionOf(warnings, model.materials.Vec2File(index));
        Diagnostic& added = warnings.AddAt(wanted ? "missing-temperatures" : "ignored-temperatures",
                                           definition != nullptr ? definition->valuePlace : cubes.place, message);
        const PropertyRecord* const format = cubes.Find("format");
        if (format == nullptr) continue;
        warnings.AddNote(added,
                         given ? "The rows have temperatures." : "With 'format 1' each row ends with a temperature.",
                         format->valuePlace);
    }
}

void WarnOfUnused(Warnings& warnings) {
    if (warnings.AnyError() || !warnings.gridIsWhole) return;
    const MaterialRepository& materials = warnings.model.materials;
    const std::bitset<256> used = UsedMaterials(warnings, true);
    for (int index = 1; index < static_cast<int>(materials.Count()); ++index) {
        if (used[static_cast<std::size_t>(index)]) continue;
        const int number = materials.Vec2File(index);
        const PropertyRecord* const definition = DefinitionOf(warnings, number);
        if (definition == nullptr) continue;
        warnings.AddAt(
            "unused-material", definition->valuePlace,
            "No cell is made of material " + std::to_string(number) + ", \"" + materials[index].name + "\".");
    }
}

/// The material, by vector index, whose waves are the fastest ones in the grid, and their speed; 0 for none.
std::pair<int, double> Fastest(const Warnings& warnings) {
    const Model& model = warnings.model;
    const std::bitset<256> used = UsedMaterials(warnings, true);
    std::pair<int, double> fastest{0, 0.0};
    for (int index = 1; index < static_cast<int>(model.materials.Count()); ++index) {
        if (!used[static_cast<std::size_t>(index)]) continue;
        const Material& material = model.materials[index];
        const double speed = material.temperatureDependent ? Material(material, model.roomTemperature).vp : material.vp;
        if (std::isfinite(speed) && speed > fastest.second) fastest = {index, speed};
    }
    return fastest;
}

void WarnOfCourantLimit(Warnings& warnings) {
    // Beyond that no time step is too long by mistake.
    constexpr double senseless = 1e3;
    const double limit = 1.0 / std::sqrt(3.0);
    const auto analysis = warnings.Sections("analysis");
    const PropertyRecord* const timeStep = analysis.empty() ? nullptr : analysis.front()->Find("timestep");
    const auto [index, speed] = Fastest(warnings);
    if (timeStep == nullptr || index == 0) return;
    const Model& model = warnings.model;
    const double cells = model.timeStep * speed / model.cellSize;
    if (!std::isfinite(cells) || cells <= 1.0) return;
    const int number = model.materials.Vec2File(index);
    const std::string waves = "the waves of material " + std::to_string(number) + ", " + Shown(speed, 4) +
                              " a second, pass " + Shown(cells, 3) + " cells";
    if (cells > senseless) {
        warnings.AddAt("courant-limit", timeStep->valuePlace,
                       "The units seem to differ: in one time step " + waves +
                           ". Speeds and the size of cells are in the same unit of length.");
        return;
    }
    const double longest = limit * model.cellSize / speed * 1e6;
    Diagnostic& added = warnings.AddAt("courant-limit", timeStep->valuePlace, "In one time step " + waves + '.');
    added.notes.push_back({"In three dimensions the usual limit of stability is " + Shown(limit, 3) +
                               " cells, a time step of " + Shown(longest, 3) + " microseconds here.",
                           {},
                           0});
    if (const PropertyRecord* const definition = DefinitionOf(warnings, number)) {
        warnings.AddNote(added, "This is the material.", definition->valuePlace);
    }
}

}  // namespace

void WarnOfMaterials(Warnings& warnings) {
    if (warnings.grid.empty()) return;
    WarnOfTemperatures(warnings);
    WarnOfUnused(warnings);
    WarnOfCourantLimit(warnings);
}

}  // namespace orvalo
