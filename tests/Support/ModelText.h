#pragma once

#include <algorithm>
#include <charconv>
#include <iterator>
#include <map>
#include <memory>
#include <string>

#include <Orvalo3DReader/Model/Model.h>

/// Models as text that is equal only where every bit is.
namespace orvalo::support {

/// As many of `count` elements as are shown. No text of a test has more rows, and where a file merely claims a count
/// the rest is address space that nobody should walk.
inline std::size_t Shown(std::size_t count) {
    return std::min<std::size_t>(count, 1000);
}

/// A line of a word and of numbers, each in its shortest form that is no other number's.
template <class... Numbers>
std::string Line(std::string word, Numbers... numbers) {
    const auto append = [&word](double number) {
        char shown[32];
        word.append(" ").append(shown, std::to_chars(std::begin(shown), std::end(shown), number).ptr);
    };
    (append(static_cast<double>(numbers)), ...);
    return word + '\n';
}

template <class... Numbers>
std::string Line(std::string word, const Point& point, Numbers... numbers) {
    return Line(std::move(word), point.x, point.y, point.z, numbers...);
}

/// Bounds, cubes and damping cubes, a line for each.
inline std::string ShowGrid(const Model& model) {
    const Bounds& b = model.bounds;
    const Cubes& cubes = model.cubes;
    std::string text = b.defined ? Line("bounds", b.minX, b.maxX, b.minY, b.maxY, b.minZ, b.maxZ) : "";
    if (cubes.CubesCount() > Shown(cubes.CubesCount())) text += Line("cubes", cubes.CubesCount());
    for (std::size_t i = 0; i < Shown(cubes.Records().size()); ++i) {
        const Cube cube = cubes.CubeAt(i);
        text += Line("cube", cube.x, cube.y, cube.z, cube.material);
        if (cubes.TemperaturesPtr() != nullptr) text += Line("at", cubes.GetTemperature(i));
    }
    for (std::size_t i = 0; i < Shown(cubes.DampingRecords().size()); ++i) {
        const DampingCube cube = cubes.DampingCubeAt(i);
        text += Line("damping", cube.x, cube.y, cube.z, cube.material, cube.coefficient);
    }
    return text;
}

/// Tables, a line for each and for every number in it.
inline std::string ShowTables(const std::map<int, std::shared_ptr<Table>>& tables) {
    std::string text;
    for (const auto& [id, table] : tables) {
        text += Line("table", id, table->id);
        for (std::size_t i = 0; i < Shown(table->count); ++i) text += Line("", table->Get(i));
    }
    return text;
}

/// What the bulk sections put into a model.
inline std::string ShowBulk(const Model& model) {
    std::string text = ShowGrid(model) + ShowTables(model.tables);
    for (const auto& [id, set] : model.sets) {
        text += Line("set", id, set->id);
        for (const Point* p = set->begin(); p != set->begin() + Shown(set->count); ++p) text += Line("", *p);
    }
    return text;
}

inline std::string ShowMaterials(const MaterialRepository& materials) {
    std::string text;
    for (int i = 1; i < static_cast<int>(materials.Count()); ++i) {
        const Material& m = materials[i];
        const double(&d)[3] = m.densityCoefficients;
        const double(&y)[3] = m.youngCoefficients;
        const double(&p)[3] = m.poissonCoefficients;
        text += Line(m.name, materials.Vec2File(i), m.temperatureDependent, m.density, m.vp, m.vs, m.mu, m.lambda);
        if (m.temperatureDependent) text += Line("by T", d[0], d[1], d[2], y[0], y[1], y[2], p[0], p[1], p[2]);
    }
    return text;
}

inline std::string ShowActuator(const Actuator& a) {
    const Actuator::Definition& d = a.definition;
    return Line("actuator", a.shared.position, a.shared.id) +
           Line(" drives", a.start, a.input, a.method, a.tableId, a.table->id) +
           Line(" by", d.type, d.waveform, d.envelope, d.frequency, d.duration, d.phase) +
           Line(" along", a.directionU, a.directionV, a.directionW, a.factorU, a.factorV, a.factorW) +
           Line(" with", a.amplitude, a.invert);
}

inline std::string ShowPiezo(const Piezo& p) {
    std::string text = Line("piezo", p.shared.position, p.shared.id) + Line(" along", p.direction) +
                       Line(" with", p.start, p.method, p.amplitude, p.samplesCount, p.data.Count());
    for (const auto& [key, c] : p.data.Cells()) text += Line(" ", key, c->x, c->y, c->tableU, c->tableV, c->tableW);
    for (const auto& [id, found] : p.usedTables) text += Line(" uses", id, found);
    return text + ShowTables(p.tables);
}

template <class Output>
std::string ShowOutputs(const char* what, const std::map<int, Output>& outputs) {
    std::string text;
    for (const auto& [id, o] : outputs) {
        text += Line(what, o.shared.position, id, o.shared.id) + o.output + ' ' + o.file.fileName;
        text += Line("", o.file.writeMode, o.file.notation, o.file.fileFormat);
    }
    return text;
}

/// All that a whole model holds.
inline std::string ShowModel(const Model& model) {
    std::string text = Line("analysis", model.cellSize, model.timeStep, model.startTime, model.roomTemperature);
    text += ShowMaterials(model.materials);
    for (const Actuator& actuator : model.actuators) text += ShowActuator(actuator);
    for (const auto& piezo : model.piezos) text += ShowPiezo(*piezo);
    text += ShowOutputs("sensor", model.sensors) + ShowOutputs("dump", model.dumps);
    for (const auto& [id, found] : model.requiredTables) text += Line("requires", id, found);
    return text + ShowBulk(model);
}

}  // namespace orvalo::support
