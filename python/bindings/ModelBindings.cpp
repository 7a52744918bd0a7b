#include <array>
#include <atomic>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include <pybind11/stl.h>

#include <Orvalo3DReader/Model/Model.h>
#include <Orvalo3DReader/Reader/ReadModel.h>

#include "Bindings.h"
#include "Unlocked.h"
#include "Values.h"
#include "Watched.h"

namespace orvalo::python {

namespace {

using ModelPointer = std::shared_ptr<Model>;

/// The packed records of the grid, with the damping coefficient or without.
py::dtype RecordType(bool damping) {
    py::list fields;
    for (const char* name : {"x", "y", "z"}) fields.append(py::make_tuple(name, "<i2"));
    fields.append(py::make_tuple("material", "u1"));
    if (damping) fields.append(py::make_tuple("coefficient", "<f8"));
    return py::dtype::from_args(fields);
}

ModelPointer ReadWatched(const py::bytes& path, bool cubesOnly, bool doublePrecision, unsigned threads,
                         const py::object& progress) {
    const std::string file = path;
    CubeProgress cubes(file, progress);
    std::atomic<bool> stop = false;
    ReadOptions options;
    options.cubesOnly = cubesOnly;
    options.doublePrecision = doublePrecision;
    options.threads = threads;
    options.cubesRead = progress.is_none() ? nullptr : cubes.Counter();
    options.stop = &stop;
    ModelPointer model;
    RunWatched([&] { model = std::make_shared<Model>(ReadModel(file, options)); }, [&] { return cubes.Fraction(); },
               stop, progress);
    return model;
}

py::array CubesView(const Model& model) {
    const Cubes& cubes = model.cubes;
    return View(RecordType(false), cubes.CubesCount(), cubes.CubesPtr(), cubes);
}

py::array DampingView(const Model& model) {
    const Cubes& cubes = model.cubes;
    return View(RecordType(true), cubes.DampingCubesCount(), cubes.DampingCubesPtr(), cubes);
}

py::object TemperaturesView(const Model& model) {
    const Cubes& cubes = model.cubes;
    if (cubes.TemperaturesPtr() == nullptr) return py::none();
    return View(py::dtype::of<double>(), cubes.CubesCount(), cubes.TemperaturesPtr(), cubes);
}

py::object BoundsTuple(const Model& model) {
    const Bounds& box = model.bounds;
    if (!box.defined) return py::none();
    return py::make_tuple(box.minX, box.maxX, box.minY, box.maxY, box.minZ, box.maxZ);
}

/// The material at a temperature: what it is, unless it is given by coefficients.
Material At(const Material& material, double temperature) {
    return material.temperatureDependent ? Material(material, temperature) : material;
}

void FillSpeeds(const Model& model, double* vp, double* vs) {
    const Cubes& cubes = model.cubes;
    const double* const temperatures = cubes.TemperaturesPtr();
    std::vector<Material> atRoom;
    for (int index = 0; index < static_cast<int>(model.materials.Count()); ++index) {
        atRoom.push_back(At(model.materials[index], model.roomTemperature));
    }
    std::size_t row = 0;
    for (const Cube cube : cubes.Records()) {
        const auto store = [&](const Material& material) {
            vp[row] = material.vp;
            vs[row] = material.vs;
        };
        if (temperatures != nullptr && model.materials.TemperatureDependent(cube.material)) {
            store(Material(model.materials[cube.material], temperatures[row]));
        } else {
            store(atRoom[cube.material]);
        }
        ++row;
    }
}

py::tuple WaveSpeeds(const Model& model) {
    const auto count = static_cast<py::ssize_t>(model.cubes.Records().size());
    py::array_t<double> vp(count);
    py::array_t<double> vs(count);
    double* const toVp = vp.mutable_data();
    double* const toVs = vs.mutable_data();
    Unlocked([&] { FillSpeeds(model, toVp, toVs); });
    return py::make_tuple(vp, vs);
}

/// mu and lambda of a material of that density and wave speeds.
py::tuple LameConstants(double density, double vp, double vs) {
    Material material;
    material.SetFormat0(density, vp, vs);
    return py::make_tuple(material.mu, material.lambda);
}

using Coefficients = std::array<double, 3>;

/// density, vp, vs, mu and lambda of a material given by coefficients.
py::tuple MaterialAt(const Coefficients& density, const Coefficients& young, const Coefficients& poisson,
                     double temperature) {
    Material source;
    source.SetFormat2({density[0], density[1], density[2]}, {young[0], young[1], young[2]},
                      {poisson[0], poisson[1], poisson[2]});
    const Material material(source, temperature);
    return py::make_tuple(material.density, material.vp, material.vs, material.mu, material.lambda);
}

}  // namespace

void DefineModel(py::module_& module) {
    using py::arg;
    py::class_<Model, ModelPointer>(module, "ModelData")
        .def_readonly("cell_size", &Model::cellSize)
        .def_readonly("time_step", &Model::timeStep)
        .def_readonly("start_time", &Model::startTime)
        .def_readonly("room_temperature", &Model::roomTemperature)
        .def("bounds", &BoundsTuple)
        .def("cubes", &CubesView)
        .def("damping", &DampingView)
        .def("temperatures", &TemperaturesView)
        .def("materials", &MaterialRecords)
        .def("actuators", &ActuatorRecords)
        .def("piezos", &PiezoRecords)
        .def("sensors", &SensorRecords)
        .def("dumps", &DumpRecords)
        .def("tables", py::overload_cast<const Model&>(&TableRecords))
        .def("sets", &SetRecords)
        .def("wave_speeds", &WaveSpeeds);
    module.def("read_model", &ReadWatched, arg("path"), arg("cubes_only"), arg("double_precision"), arg("threads"),
               arg("progress"));
    module.def("lame_constants", &LameConstants, arg("density"), arg("vp"), arg("vs"));
    module.def("material_at", &MaterialAt, arg("density"), arg("young"), arg("poisson"), arg("temperature"));
}

}  // namespace orvalo::python
