#include "Failure.h"

#include <cstdint>
#include <exception>
#include <string>

#include <Orvalo3DReader/Common/Exception.h>
#include <Orvalo3DReader/Common/ReaderMessages.h>
#include <Orvalo3DReader/Reader/ReadError.h>

#include "Values.h"

namespace orvalo::python {

namespace {

/// The library names file, line and column in a first line of its own, which the true place replaces.
std::string WithoutPlace(const std::string& what) {
    if (!what.starts_with("Error in file \"")) return what;
    const std::size_t end = what.find(":\n", what.rfind("\", line "));
    return end == std::string::npos ? what : what.substr(end + 2);
}

void SetFailure(const py::object& type, const Exception& error, const InputPlace& place, std::uint64_t row) {
    const py::tuple said = py::make_tuple(error.code(), CatalogueName(error.code()), Text(WithoutPlace(error.what())),
                                          PlaceTuple(place), row);
    PyErr_SetObject(type.ptr(), said.ptr());
}

}  // namespace

const char* CatalogueName(int code) {
    switch (code) {
#include "CatalogueNames.inc"
        default:
            return "";
    }
}

void DefineFailure(py::module_& module) {
    static py::object type;
    type = py::reinterpret_steal<py::object>(PyErr_NewException("orvalo._orvalo.Failure", PyExc_Exception, nullptr));
    module.attr("Failure") = type;
    // Python takes the type with it when it ends, and so does not find it released after that.
    type.inc_ref();
    py::register_exception_translator([](std::exception_ptr thrown) {
        try {
            if (thrown) std::rethrow_exception(thrown);
        } catch (const ReadError& error) {
            SetFailure(type, error, error.Place(), error.Row());
        } catch (const Exception& error) {
            SetFailure(type, error, {}, 0);
        }
    });
}

}  // namespace orvalo::python
