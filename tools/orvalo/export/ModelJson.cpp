#include "ModelJson.h"

#include <cmath>
#include <cstddef>
#include <iterator>
#include <map>
#include <memory>
#include <string>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "ModelSummary.h"
#include "export/OutputFile.h"

namespace {

using Json = nlohmann::ordered_json;
using Tables = std::map<int, std::shared_ptr<orvalo::Table>>;

void AddSamples(Json& list, const Tables& tables) {
    for (Json& entry : list) {
        const orvalo::Table& table = *tables.at(entry["id"].get<int>());
        Json& data = entry["data"] = Json::array();
        for (std::size_t i = 0; i < table.count; ++i) data.push_back(table.Get(i));
    }
}

void AddPoints(Json& entry, const orvalo::PiezoData& points) {
    Json& list = entry["points"] = Json::array();
    for (const auto& [key, point] : points.Cells()) {
        Json one = {{"x", point->x}, {"y", point->y}, {"tables", nullptr}};
        if (point->tableU != 0) one["tables"] = {point->tableU, point->tableV, point->tableW};
        list.push_back(one);
    }
}

/// Writes a list whose members come one by one, as they may be many.
template <class Text>
void WriteList(OutputFile& out, const char* name, std::size_t count, const Text& text) {
    out.Write(fmt::format(",\n  \"{}\": [", name));
    for (std::size_t i = 0; i < count; ++i) out.Write((i == 0 ? "\n    " : ",\n    ") + text(i));
    out.Write("\n  ]");
}

std::string NumberText(double number) {
    return std::isfinite(number) ? fmt::format("{}", number) : "null";
}

void WriteCubes(OutputFile& out, const orvalo::Model& model) {
    const auto cubes = model.cubes.Records();
    const double* temperatures = model.cubes.TemperaturesPtr();
    const auto row = [&](const auto& cube) {
        return fmt::format("[{}, {}, {}, {}", cube.x, cube.y, cube.z, model.materials.Vec2File(cube.material));
    };
    WriteList(out, "cubes", cubes.size(), [&](std::size_t i) {
        return row(cubes[i]) + (temperatures == nullptr ? "]" : ", " + NumberText(temperatures[i]) + "]");
    });
    const auto damping = model.cubes.DampingRecords();
    WriteList(out, "dampingCubes", damping.size(),
              [&](std::size_t i) { return row(damping[i]) + ", " + NumberText(damping[i].coefficient) + "]"; });
}

}  // namespace

void WriteModelJson(const orvalo::Model& model, const std::string& path, const ExportOptions& options) {
    Json document;
    AddToJson(document, model, Summarize(model, false));
    AddSamples(document["tables"], model.tables);
    for (std::size_t i = 0; i < model.piezos.size(); ++i) {
        Json& entry = document["piezos"][i];
        AddPoints(entry, model.piezos[i]->data);
        AddSamples(entry["tables"], model.piezos[i]->tables);
    }
    for (Json& entry : document["sets"]) {
        Json& points = entry["points"] = Json::array();
        for (const orvalo::Point& point : *model.sets.at(entry["id"].get<int>())) {
            points.push_back({point.x, point.y, point.z});
        }
    }
    OutputFile out(path, options.overwrite);
    std::string text = document.dump(2, ' ', false, Json::error_handler_t::replace);
    // The closing brace comes after the rows.
    text.erase(text.find_last_of('\n'));
    out.Write(text);
    if (options.withCubes) WriteCubes(out, model);
    out.Write("\n}\n");
    out.Commit();
}
