#include <map>
#include <memory>
#include <string>

#include <Orvalo3DReader/Model/Model.h>

#include "Bindings.h"
#include "Values.h"

namespace orvalo::python {

namespace {

using py::arg;

py::tuple Coefficients(const double (&numbers)[3]) {
    return py::make_tuple(numbers[0], numbers[1], numbers[2]);
}

py::dict FileRecord(const FileProperties& file) {
    return py::dict(arg("name") = Text(file.fileName), arg("write_mode") = file.writeMode,
                    arg("notation") = file.notation, arg("file_format") = file.fileFormat);
}

/// The samples are the table's own.
py::list TableRecords(const std::map<int, std::shared_ptr<Table>>& tables) {
    py::list records;
    for (const auto& [id, table] : tables) {
        const py::dtype type = table->doublePrecision ? py::dtype::of<double>() : py::dtype::of<float>();
        records.append(py::dict(arg("id") = id, arg("samples") = View(type, table->count, table->data, table)));
    }
    return records;
}

/// The points of a patch as a copy: the patch keeps them one by one.
py::array PiezoPoints(const PiezoData& data) {
    py::list fields;
    for (const char* name : {"x", "y"}) fields.append(py::make_tuple(name, "<i2"));
    for (const char* name : {"table_u", "table_v", "table_w"}) fields.append(py::make_tuple(name, "<u2"));
    py::array points(py::dtype::from_args(fields), static_cast<py::ssize_t>(data.Cells().size()));
    auto* record = static_cast<PiezoData::Cell*>(points.mutable_data());
    for (const auto& [key, cell] : data.Cells()) *record++ = *cell;
    return points;
}

const char* AxisName(const Point& direction) {
    return direction.x != 0 ? "x" : direction.y != 0 ? "y" : "z";
}

std::string Driven(const Actuator& actuator) {
    std::string letters;
    if (actuator.directionU) letters += 'u';
    if (actuator.directionV) letters += 'v';
    if (actuator.directionW) letters += 'w';
    return letters;
}

}  // namespace

py::list MaterialRecords(const Model& model) {
    py::list records;
    for (int index = 0; index < static_cast<int>(model.materials.Count()); ++index) {
        const Material& material = model.materials[index];
        py::dict record(arg("number") = model.materials.Vec2File(index), arg("name") = Text(material.name),
                        arg("density") = material.density, arg("vp") = material.vp, arg("vs") = material.vs,
                        arg("mu") = material.mu, arg("lam") = material.lambda);
        if (material.temperatureDependent) {
            record["density_coefficients"] = Coefficients(material.densityCoefficients);
            record["young_coefficients"] = Coefficients(material.youngCoefficients);
            record["poisson_coefficients"] = Coefficients(material.poissonCoefficients);
        }
        records.append(record);
    }
    return records;
}

py::list ActuatorRecords(const Model& model) {
    py::list records;
    for (const Actuator& actuator : model.actuators) {
        py::dict record(arg("position") = Triple(actuator.shared.position), arg("method") = actuator.method,
                        arg("direction") = Driven(actuator),
                        arg("factors") = py::make_tuple(actuator.factorU, actuator.factorV, actuator.factorW),
                        arg("amplitude") = actuator.amplitude, arg("invert") = actuator.invert,
                        arg("start_steps") = -static_cast<long long>(actuator.start), arg("table") = actuator.tableId);
        if (actuator.input == ActuatorInputDefinition) {
            const Actuator::Definition& wave = actuator.definition;
            record["definition"] =
                py::dict(arg("type") = wave.type, arg("waveform") = wave.waveform, arg("envelope") = wave.envelope,
                         arg("frequency") = wave.frequency, arg("duration") = wave.duration, arg("phase") = wave.phase);
        }
        records.append(record);
    }
    return records;
}

py::list PiezoRecords(const Model& model) {
    py::list records;
    for (const auto& piezo : model.piezos) {
        records.append(py::dict(arg("id") = piezo->shared.id, arg("position") = Triple(piezo->shared.position),
                                arg("axis") = AxisName(piezo->direction), arg("points") = PiezoPoints(piezo->data),
                                arg("method") = piezo->method, arg("amplitude") = piezo->amplitude,
                                arg("start_steps") = -static_cast<long long>(piezo->start),
                                arg("tables") = TableRecords(piezo->tables)));
    }
    return records;
}

py::list SensorRecords(const Model& model) {
    py::list records;
    for (const auto& [id, sensor] : model.sensors) {
        records.append(py::dict(arg("id") = id, arg("position") = Triple(sensor.shared.position),
                                arg("output") = Text(sensor.output), arg("file") = FileRecord(sensor.file)));
    }
    return records;
}

py::list DumpRecords(const Model& model) {
    py::list records;
    for (const auto& [id, dump] : model.dumps) {
        records.append(
            py::dict(arg("id") = id, arg("output") = Text(dump.output), arg("file") = FileRecord(dump.file)));
    }
    return records;
}

py::list TableRecords(const Model& model) {
    return TableRecords(model.tables);
}

py::list SetRecords(const Model& model) {
    py::list records;
    for (const auto& [id, set] : model.sets) {
        const auto points = set->points == nullptr ? 0 : static_cast<py::ssize_t>(set->count);
        records.append(
            py::dict(arg("id") = id, arg("points") = View(py::dtype::of<short>(), {points, 3},
                                                          {sizeof(Point), sizeof(short)}, set->points, set)));
    }
    return records;
}

}  // namespace orvalo::python
