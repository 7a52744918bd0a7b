#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>

#include <Orvalo3DReader/Model/Point.h>
#include <Orvalo3DReader/Model/Table.h>
#include <Orvalo3DReader/Reader/InputPlace.h>

namespace orvalo::python {

namespace py = pybind11;

/// What an array keeps alive: a copy of whatever shares the array's memory.
template <class Owner>
py::capsule Keep(Owner owner) {
    return py::capsule(new Owner(std::move(owner)), [](void* kept) { delete static_cast<Owner*>(kept); });
}

/// A read-only array over memory that `owner` holds.
template <class Owner>
py::array View(const py::dtype& type, std::vector<py::ssize_t> shape, std::vector<py::ssize_t> strides,
               const void* data, Owner owner) {
    py::array view(type, std::move(shape), std::move(strides), data, Keep(std::move(owner)));
    view.attr("setflags")(py::arg("write") = false);
    return view;
}

/// A read-only array of one dimension over successive records.
template <class Owner>
py::array View(const py::dtype& type, std::size_t count, const void* data, Owner owner) {
    const auto records = data == nullptr ? 0 : static_cast<py::ssize_t>(count);
    return View(type, {records}, {type.itemsize()}, data, std::move(owner));
}

/// Text of a file: UTF-8, or else a byte a character.
inline py::str Text(const std::string& bytes) {
    PyObject* text = PyUnicode_DecodeUTF8(bytes.data(), static_cast<py::ssize_t>(bytes.size()), nullptr);
    if (text == nullptr) {
        PyErr_Clear();
        text = PyUnicode_DecodeLatin1(bytes.data(), static_cast<py::ssize_t>(bytes.size()), nullptr);
    }
    if (text == nullptr) throw py::error_already_set();
    return py::reinterpret_steal<py::str>(text);
}

/// A path as Python's own functions give it.
inline py::str PathText(const std::string& bytes) {
    PyObject* text = PyUnicode_DecodeFSDefaultAndSize(bytes.data(), static_cast<py::ssize_t>(bytes.size()));
    if (text == nullptr) throw py::error_already_set();
    return py::reinterpret_steal<py::str>(text);
}

inline py::tuple Triple(const Point& point) {
    return py::make_tuple(point.x, point.y, point.z);
}

/// path, line, column and offset, or None.
inline py::object PlaceTuple(const InputPlace& place) {
    if (!place.Known()) return py::none();
    return py::make_tuple(PathText(place.path), place.line, place.column, place.offset);
}

}  // namespace orvalo::python
