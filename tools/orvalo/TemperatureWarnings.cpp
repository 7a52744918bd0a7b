#include "TemperatureWarnings.h"

#include <sstream>
#include <string>
#include <vector>

#include <Orvalo3DReader/Model/Model.h>

#include "MaterialCounts.h"
#include "Problem.h"

std::vector<Problem> TemperatureWarnings(orvalo::Model& model) {
    orvalo::MaterialRepository& materials = model.materials;
    const bool gridHasTemperatures = model.cubes.TemperaturesPtr() != nullptr;
    const MaterialCounts counts = CountMaterials(model.cubes);
    materials.ClearTemperaturesInfo();
    for (int index = 0; index < static_cast<int>(materials.Count()); ++index) {
        if (counts[static_cast<std::size_t>(index)] == 0) continue;
        const bool wanted = materials.TemperatureDependent(index);
        if (wanted && !gridHasTemperatures) materials.SetTempMissing(index);
        if (!wanted && gridHasTemperatures) materials.SetTempIgnored(index);
    }
    materials.PrepareWarnings(model.roomTemperature);

    std::vector<Problem> warnings;
    std::istringstream lines(materials.GetWarnings());
    for (std::string line; std::getline(lines, line);) {
        Problem warning;
        warning.severity = Problem::Severity::warning;
        warning.message = line;
        warnings.push_back(warning);
    }
    return warnings;
}
