#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <memory>
#include <string>

#include <pybind11/stl.h>

#include <Orvalo3DReader/Model/Model.h>

#include "Bindings.h"
#include "Values.h"

namespace orvalo::python {

namespace {

/// What a record says of a field, as a number, a word or an array.
template <class Value>
Value Get(const py::handle& record, const char* field) {
    const py::object value = record[field];
    try {
        return value.cast<Value>();
    } catch (const py::cast_error&) {
        const std::string said = py::repr(value).cast<std::string>().substr(0, 100);
        throw py::value_error(std::string(field) + " cannot be " + said +
                              ": another type or a smaller number is expected.");
    }
}

Point GetPoint(const py::handle& record, const char* field) {
    const auto numbers = Get<std::array<short, 3>>(record, field);
    return {numbers[0], numbers[1], numbers[2]};
}

/// The bytes of an array of `count` records, one after the other.
template <class To>
void CopyBytes(const py::array& from, To* to) {
    if (from.nbytes() > 0) std::memcpy(to, from.data(), static_cast<std::size_t>(from.nbytes()));
}

void BuildGrid(const py::dict& record, Cubes& cubes) {
    const auto grid = Get<py::array>(record, "cubes");
    const py::object temperatures = record["temperatures"];
    cubes.AllocCubes(static_cast<std::size_t>(grid.size()), !temperatures.is_none());
    CopyBytes(grid, cubes.CubesPtr());
    if (!temperatures.is_none()) CopyBytes(temperatures.cast<py::array>(), cubes.TemperaturesPtr());
    const auto damping = Get<py::array>(record, "damping");
    if (damping.size() == 0) return;
    cubes.AllocDampingCubes(static_cast<std::size_t>(damping.size()));
    CopyBytes(damping, cubes.DampingCubesPtr());
}

void BuildBounds(const Cubes& cubes, Bounds& bounds) {
    for (const Cube cube : cubes.Records()) bounds.Update(cube.x, cube.y, cube.z);
    for (const DampingCube cube : cubes.DampingRecords()) bounds.Update(cube.x, cube.y, cube.z);
}

void SetCoefficients(const py::handle& record, Material& material) {
    double k[3][3];
    double(*next)[3] = k;
    for (const char* field : {"density_coefficients", "young_coefficients", "poisson_coefficients"}) {
        const auto three = Get<std::array<double, 3>>(record, field);
        std::copy(three.begin(), three.end(), *next++);
    }
    material.SetFormat2(k[0], k[1], k[2]);
}

Material BuildMaterial(const py::handle& record) {
    Material material(Get<std::string>(record, "name"));
    material.density = Get<double>(record, "density");
    material.vp = Get<double>(record, "vp");
    material.vs = Get<double>(record, "vs");
    material.mu = Get<double>(record, "mu");
    material.lambda = Get<double>(record, "lam");
    if (!record["density_coefficients"].is_none()) SetCoefficients(record, material);
    return material;
}

std::shared_ptr<Table> BuildTable(const py::handle& record) {
    const auto samples = Get<py::array_t<double, py::array::c_style | py::array::forcecast>>(record, "samples");
    auto table = std::make_shared<Table>();
    table->id = Get<int>(record, "id");
    table->count = static_cast<std::size_t>(samples.size());
    table->Allocate(true);
    CopyBytes(samples, static_cast<unsigned char*>(table->data));
    return table;
}

Actuator BuildActuator(const py::handle& record) {
    Actuator actuator;
    actuator.shared.position = GetPoint(record, "position");
    actuator.start = -Get<int>(record, "start_steps");
    actuator.method = Get<int>(record, "method");
    actuator.amplitude = Get<double>(record, "amplitude");
    actuator.invert = Get<bool>(record, "invert");
    const auto direction = Get<std::string>(record, "direction");
    actuator.directionU = direction.find('u') != std::string::npos;
    actuator.directionV = direction.find('v') != std::string::npos;
    actuator.directionW = direction.find('w') != std::string::npos;
    const auto factors = Get<std::array<double, 3>>(record, "factors");
    actuator.factorU = factors[0];
    actuator.factorV = factors[1];
    actuator.factorW = factors[2];
    actuator.tableId = Get<int>(record, "table");
    const py::object wave = record["definition"];
    actuator.input = wave.is_none() ? ActuatorInputWave : ActuatorInputDefinition;
    if (wave.is_none()) return actuator;
    actuator.definition.type = Get<int>(wave, "type");
    actuator.definition.waveform = Get<int>(wave, "waveform");
    actuator.definition.envelope = Get<int>(wave, "envelope");
    actuator.definition.frequency = Get<double>(wave, "frequency");
    actuator.definition.duration = Get<double>(wave, "duration");
    actuator.definition.phase = Get<double>(wave, "phase");
    return actuator;
}

std::shared_ptr<Piezo> BuildPiezo(const py::handle& record) {
    auto piezo = std::make_shared<Piezo>();
    piezo->shared.id = Get<int>(record, "id");
    piezo->shared.position = GetPoint(record, "position");
    const auto axis = Get<std::string>(record, "axis");
    piezo->direction = {static_cast<short>(axis == "x"), static_cast<short>(axis == "y"),
                        static_cast<short>(axis == "z")};
    piezo->start = -Get<int>(record, "start_steps");
    piezo->amplitude = Get<double>(record, "amplitude");
    piezo->method = Get<int>(record, "method");
    const auto points = Get<py::array>(record, "points");
    const auto* const cells = static_cast<const PiezoData::Cell*>(points.data());
    for (py::ssize_t i = 0; i < points.size(); ++i) {
        piezo->data.Add(cells[i].x, cells[i].y, cells[i].tableU, cells[i].tableV, cells[i].tableW);
    }
    for (const py::handle table : record["tables"]) {
        const auto built = BuildTable(table);
        piezo->tables[built->id] = built;
        piezo->samplesCount = built->count;
    }
    return piezo;
}

FileProperties BuildFile(const py::handle& record) {
    FileProperties file;
    file.fileName = Get<std::string>(record, "name");
    file.writeMode = Get<int>(record, "write_mode");
    file.notation = Get<int>(record, "notation");
    file.fileFormat = Get<int>(record, "file_format");
    return file;
}

template <class Output>
Output BuildOutput(const py::handle& record) {
    Output output;
    output.shared.id = Get<int>(record, "id");
    output.output = Get<std::string>(record, "output");
    output.file = BuildFile(record["file"]);
    return output;
}

Sensor BuildSensor(const py::handle& record) {
    auto sensor = BuildOutput<Sensor>(record);
    sensor.shared.position = GetPoint(record, "position");
    return sensor;
}

std::shared_ptr<Set> BuildSet(const py::handle& record) {
    const auto points = Get<py::array>(record, "points");
    auto set = std::make_shared<Set>(Get<int>(record, "id"), static_cast<unsigned>(points.shape(0)));
    CopyBytes(points, set->points);
    return set;
}

}  // namespace

std::shared_ptr<Model> BuildModel(const py::dict& record) {
    auto model = std::make_shared<Model>();
    model->cellSize = Get<double>(record, "cell_size");
    model->timeStep = Get<double>(record, "time_step");
    model->startTime = Get<double>(record, "start_time");
    model->roomTemperature = Get<double>(record, "room_temperature");
    for (const py::handle material : record["materials"]) {
        model->materials.Add(BuildMaterial(material), Get<int>(material, "number"));
    }
    BuildGrid(record, model->cubes);
    BuildBounds(model->cubes, model->bounds);
    for (const py::handle actuator : record["actuators"]) model->actuators.push_back(BuildActuator(actuator));
    for (const py::handle piezo : record["piezos"]) model->piezos.push_back(BuildPiezo(piezo));
    for (const py::handle sensor : record["sensors"]) model->sensors[Get<int>(sensor, "id")] = BuildSensor(sensor);
    for (const py::handle dump : record["dumps"]) model->dumps[Get<int>(dump, "id")] = BuildOutput<Dump>(dump);
    for (const py::handle table : record["tables"]) model->tables[Get<int>(table, "id")] = BuildTable(table);
    for (const py::handle set : record["sets"]) model->sets[Get<int>(set, "id")] = BuildSet(set);
    return model;
}

}  // namespace orvalo::python
