#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <pybind11/stl.h>

#include <Orvalo3DReader/Model/Model.h>
#include <Orvalo3DReader/Write/WriteModel.h>
#include <Orvalo3DReader/Write/WriteResultsMat.h>
#include <Orvalo3DReader/Write/WriteResultsTxt.h>

#include "Bindings.h"
#include "Values.h"
#include "Watched.h"

namespace orvalo::python {

namespace {

/// Calls `write`, with these options, while the calling thread waits.
template <class Write>
void WriteWatched(WriteOptions options, const py::object& progress, const Write& write) {
    float percent = 0.0F;
    std::atomic<bool> stop = false;
    options.stop = &stop;
    options.percentWritten = &percent;
    RunWatched([&] { write(options); },
               [&] { return std::atomic_ref(percent).load(std::memory_order_relaxed) / 100.0; }, stop, progress);
}

void WriteModelFile(const std::shared_ptr<Model>& model, const py::bytes& path, bool overwrite,
                    const std::string& comment, const std::string& cubesFile, const py::object& progress) {
    const std::string file = path;
    WriteOptions options;
    options.overwrite = overwrite;
    options.comment = comment;
    options.cubesFile = cubesFile;
    WriteWatched(options, progress, [&](const WriteOptions& all) { WriteModel(*model, file, all); });
}

template <class Column, class Number>
Column ColumnOf(const py::array_t<Number>& array, std::size_t rows) {
    if (array.ndim() != 1 || array.shape(0) != static_cast<py::ssize_t>(rows)) {
        throw py::value_error("Columns of " + std::to_string(rows) + " rows expected.");
    }
    return Column(array.data(), array.strides(0));
}

/// Columns of as many numbers each; they stay the caller's.
void WriteResultsFile(const py::bytes& path, bool mat, std::size_t rows,
                      const std::vector<py::array_t<std::int64_t>>& indices,
                      const std::vector<py::array_t<double>>& values, const std::vector<std::string>& names,
                      bool overwrite, const py::object& progress) {
    const std::string file = path;
    ResultsView view;
    view.rows = rows;
    view.valueNames = names;
    for (const auto& column : indices) view.indices.push_back(ColumnOf<ResultsView::IndexColumn>(column, rows));
    for (const auto& column : values) view.values.push_back(ColumnOf<ResultsView::ValueColumn>(column, rows));
    WriteOptions options;
    options.overwrite = overwrite;
    WriteWatched(options, progress, [&](const WriteOptions& all) {
        mat ? WriteResultsMat(view, file, all) : WriteResultsTxt(view, file, all);
    });
}

}  // namespace

void DefineWrites(py::module_& module) {
    using py::arg;
    module.def("build_model", &BuildModel, arg("record"));
    module.def("write_model", &WriteModelFile, arg("model"), arg("path"), arg("overwrite"), arg("comment"),
               arg("cubes_file"), arg("progress"));
    module.def("write_results", &WriteResultsFile, arg("path"), arg("mat"), arg("rows"), arg("indices"), arg("values"),
               arg("names"), arg("overwrite"), arg("progress"));
}

}  // namespace orvalo::python
