#include <cstddef>
#include <map>
#include <memory>
#include <string>

#include <nlohmann/json.hpp>

#include <Orvalo3DReader/Model/Model.h>

#include "ModelNames.h"
#include "ModelSummary.h"

namespace {

using Json = nlohmann::ordered_json;

Json ToJson(const orvalo::Point& point) {
    return {point.x, point.y, point.z};
}

Json ToJson(const ModelSummary::Range& range) {
    return {{"min", range.least}, {"max", range.greatest}};
}

Json ToJson(const ModelSummary::Excitation& excitation) {
    return {{"samples", excitation.samples}, {"start", excitation.start}, {"duration", excitation.duration}};
}

Json GridToJson(const orvalo::Model& model, const ModelSummary& summary) {
    Json grid;
    grid["cubes"] = model.cubes.CubesCount();
    grid["boxIncludesDamping"] = model.cubes.DampingCubesCount() > 0;
    if (!summary.cubesOnly) grid["cellSize"] = model.cellSize;
    for (std::size_t i = 0; i < summary.box.size(); ++i) {
        const ModelSummary::Axis& axis = summary.box[i];
        Json& entry = grid[std::string(1, "xyz"[i])];
        entry = {{"min", axis.first}, {"max", axis.last}, {"cubes", axis.cubes}};
        if (!summary.cubesOnly) entry["length"] = axis.cubes * model.cellSize;
    }
    if (summary.temperatures) grid["temperatures"] = ToJson(*summary.temperatures);
    grid["dampingCubes"] = model.cubes.DampingCubesCount();
    if (summary.dampingCoefficients) grid["dampingCoefficients"] = ToJson(*summary.dampingCoefficients);
    return grid;
}

Json CoefficientsToJson(const double (&coefficients)[3]) {
    return {coefficients[0], coefficients[1], coefficients[2]};
}

Json MaterialsToJson(const ModelSummary& summary) {
    Json list = Json::array();
    for (const ModelSummary::MaterialUse& use : summary.materials) {
        Json entry = {{"number", use.number}, {"cubes", use.cubes}};
        if (use.properties) {
            const orvalo::Material& material = *use.properties;
            entry["name"] = material.name;
            entry["temperatureDependent"] = material.temperatureDependent;
            entry["density"] = material.density;
            entry["vp"] = material.vp;
            entry["vs"] = material.vs;
            entry["lambda"] = material.lambda;
            entry["mu"] = material.mu;
            if (material.temperatureDependent) {
                entry["coefficients"] = {{"density", CoefficientsToJson(material.densityCoefficients)},
                                         {"young", CoefficientsToJson(material.youngCoefficients)},
                                         {"poisson", CoefficientsToJson(material.poissonCoefficients)}};
            }
        }
        list.push_back(entry);
    }
    return list;
}

Json DefinitionToJson(const orvalo::Actuator::Definition& definition) {
    return {{"type", TypeName(definition.type)},
            {"waveform", WaveformName(definition.waveform)},
            {"envelope", EnvelopeName(definition.envelope)},
            {"frequency", definition.frequency},
            {"duration", definition.duration},
            {"phase", definition.phase}};
}

Json ActuatorsToJson(const orvalo::Model& model, const ModelSummary& summary) {
    Json list = Json::array();
    for (std::size_t i = 0; i < model.actuators.size(); ++i) {
        const orvalo::Actuator& actuator = model.actuators[i];
        constexpr int byDefinition = 0;
        Json entry = {{"position", ToJson(actuator.shared.position)},
                      {"input", actuator.input == byDefinition ? "definition" : "wave"},
                      {"method", MethodName(actuator.method)},
                      {"direction", DirectionLetters(actuator)},
                      {"factors", {actuator.factorU, actuator.factorV, actuator.factorW}},
                      {"amplitude", actuator.amplitude},
                      {"processing", ProcessingName(actuator.invert)},
                      {"table", actuator.tableId}};
        entry.update(ToJson(summary.actuators[i]));
        if (actuator.input == byDefinition) entry["definition"] = DefinitionToJson(actuator.definition);
        list.push_back(entry);
    }
    return list;
}

Json TablesToJson(const std::map<int, std::shared_ptr<orvalo::Table>>& tables) {
    Json list = Json::array();
    for (const auto& [id, table] : tables) {
        if (id > 0) list.push_back({{"id", id}, {"samples", table->count}});
    }
    return list;
}

Json PiezosToJson(const orvalo::Model& model, const ModelSummary& summary) {
    Json list = Json::array();
    for (std::size_t i = 0; i < model.piezos.size(); ++i) {
        const orvalo::Piezo& piezo = *model.piezos[i];
        Json entry = {{"id", piezo.shared.id},
                      {"position", ToJson(piezo.shared.position)},
                      {"axis", ToJson(piezo.direction)},
                      {"method", MethodName(piezo.method)},
                      {"amplitude", piezo.amplitude},
                      {"points", piezo.data.Cells().size()},
                      {"tables", TablesToJson(piezo.tables)}};
        entry.update(ToJson(summary.piezos[i]));
        list.push_back(entry);
    }
    return list;
}

Json OutputToJson(int id, const std::string& output, const orvalo::FileProperties& file) {
    return {{"id", id},
            {"output", output},
            {"file", file.fileName},
            {"fileFormat", FileFormatName(file.fileFormat)},
            {"notation", NotationName(file.notation)},
            {"writeMode", WriteModeName(file.writeMode)}};
}

Json SensorsToJson(const orvalo::Model& model) {
    Json list = Json::array();
    for (const auto& [id, sensor] : model.sensors) {
        Json entry = OutputToJson(id, sensor.output, sensor.file);
        entry["position"] = ToJson(sensor.shared.position);
        list.push_back(entry);
    }
    return list;
}

Json DumpsToJson(const orvalo::Model& model) {
    Json list = Json::array();
    for (const auto& [id, dump] : model.dumps) list.push_back(OutputToJson(id, dump.output, dump.file));
    return list;
}

}  // namespace

void AddToJson(Json& document, const orvalo::Model& model, const ModelSummary& summary) {
    document["grid"] = GridToJson(model, summary);
    document["materials"] = MaterialsToJson(summary);
    if (summary.cubesOnly) return;
    document["roomTemperature"] = model.roomTemperature;
    document["timeStep"] = summary.timeStep;
    document["startTime"] = summary.startTime;
    document["actuators"] = ActuatorsToJson(model, summary);
    document["piezos"] = PiezosToJson(model, summary);
    document["sensors"] = SensorsToJson(model);
    document["dumps"] = DumpsToJson(model);
    document["tables"] = TablesToJson(model.tables);
    document["sets"] = Json::array();
    for (const auto& [id, set] : model.sets) document["sets"].push_back({{"id", id}, {"points", set->count}});
}
