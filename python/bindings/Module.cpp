#include "Bindings.h"
#include "Failure.h"

PYBIND11_MODULE(_orvalo, module) {
    using namespace orvalo::python;
    module.doc() = "What the package orvalo takes from the C++ library. Use the package instead.";
    module.attr("__version__") = ORVALO_VERSION;
    DefineFailure(module);
    DefineModel(module);
    DefineResults(module);
    DefineChecks(module);
    DefineWrites(module);
}
