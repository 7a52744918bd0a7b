#pragma once

#include <memory>

#include <pybind11/pybind11.h>

namespace orvalo {
class Model;
}

namespace orvalo::python {

/// Each adds what it is about to the extension module.
void DefineModel(pybind11::module_& module);
void DefineResults(pybind11::module_& module);
void DefineChecks(pybind11::module_& module);
void DefineWrites(pybind11::module_& module);

/// What stands in a model besides its grid, as the keyword arguments of the package's data classes.
pybind11::list MaterialRecords(const Model& model);
pybind11::list ActuatorRecords(const Model& model);
pybind11::list PiezoRecords(const Model& model);
pybind11::list SensorRecords(const Model& model);
pybind11::list DumpRecords(const Model& model);
pybind11::list TableRecords(const Model& model);
pybind11::list SetRecords(const Model& model);

/// The model that such records make, in one dictionary.
std::shared_ptr<Model> BuildModel(const pybind11::dict& record);

}  // namespace orvalo::python
