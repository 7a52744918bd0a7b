#pragma once

#include <pybind11/pybind11.h>

namespace orvalo::python {

/// Defines the exception Failure, which carries all that the library says of an error to the package's Python code:
/// (code, name, message, place or None, row), and has it raised for what the library throws.
void DefineFailure(pybind11::module_& module);

/// The name of a message of the catalogue; empty for a code that is none.
const char* CatalogueName(int code);

}  // namespace orvalo::python
