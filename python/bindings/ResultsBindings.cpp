#include <algorithm>
#include <atomic>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include <Orvalo3DReader/Reader/ReadResults.h>
#include <Orvalo3DReader/Results/ResultsMat.h>
#include <Orvalo3DReader/Results/ResultsTxt.h>

#include "Bindings.h"
#include "Unlocked.h"
#include "Values.h"
#include "Watched.h"

namespace orvalo::python {

namespace {

using ResultsPointer = std::shared_ptr<Results>;

ResultsPointer ReadWatched(const py::bytes& path, unsigned threads, const py::object& progress) {
    const std::string file = path;
    float percent = 0.0F;
    std::atomic<bool> stop = false;
    ReadOptions options;
    options.threads = threads;
    options.percentRead = progress.is_none() ? nullptr : &percent;
    options.stop = &stop;
    ResultsPointer results;
    RunWatched([&] { results = ReadResults(file, options); },
               [&] { return std::atomic_ref(percent).load(std::memory_order_relaxed) / 100.0; }, stop, progress);
    return results;
}

/// Calls `use` with the results as what they are: the library makes no other kinds.
template <class Use>
auto AsWhatTheyAre(const Results& results, const Use& use) {
    const auto* const text = dynamic_cast<const ResultsTxt*>(&results);
    return text != nullptr ? use(*text) : use(dynamic_cast<const ResultsMat&>(results));
}

/// The columns from all of their runs, each with as many entries, as an array of one dimension, or of two where there
/// may be several: a view where one run holds all rows and the columns lie evenly, else a copy.
template <class Number>
py::array Columns(const std::vector<std::vector<ColumnRun<Number>>>& columns, std::size_t rows,
                  const ResultsPointer& results) {
    constexpr auto size = static_cast<py::ssize_t>(sizeof(Number));
    const auto count = static_cast<py::ssize_t>(columns.size());
    const std::vector<py::ssize_t> shape = {static_cast<py::ssize_t>(rows), count};
    if (count > 0 && columns[0].size() == 1) {
        const ColumnRun<Number>& first = columns[0][0];
        const py::ssize_t step = (columns.back()[0].data - first.data) / std::max<py::ssize_t>(1, count - 1);
        return View(py::dtype::of<Number>(), shape, {static_cast<py::ssize_t>(first.stride) * size, step * size},
                    first.data, results);
    }
    py::array_t<Number, py::array::f_style> copy(shape);
    Number* to = copy.mutable_data();
    for (const auto& runs : columns) {
        for (const ColumnRun<Number>& run : runs) {
            for (std::size_t row = 0; row < run.rows; ++row) *to++ = run.data[row * run.stride];
        }
    }
    copy.attr("setflags")(py::arg("write") = false);
    return copy;
}

py::array Values(const ResultsPointer& results, unsigned col) {
    const auto runs = AsWhatTheyAre(*results, [col](const auto& known) { return known.ValueRuns(col); });
    return Columns<double>({runs}, results->RowCount(), results).attr("reshape")(-1);
}

py::array Indices(const ResultsPointer& results) {
    std::vector<std::vector<ColumnRun<short>>> columns;
    for (unsigned col = 0; col < results->IndicesColCount(); ++col) {
        columns.push_back(AsWhatTheyAre(*results, [col](const auto& known) { return known.IndexRuns(col); }));
    }
    return Columns<short>(columns, results->RowCount(), results);
}

py::object ColumnNames(const Results& results) {
    const auto* const text = dynamic_cast<const ResultsTxt*>(&results);
    if (text == nullptr) return py::none();
    py::list names;
    for (const std::string& name : text->ColumnNames()) names.append(Text(name));
    return names;
}

using Coordinates = py::array_t<int, py::array::c_style>;

/// The values of a column at cubes, `missing` where there is none.
py::array_t<double> At(const Results& results, unsigned col, const Coordinates& x, const Coordinates& y,
                       const Coordinates& z, double missing) {
    if (x.size() != y.size() || x.size() != z.size()) throw py::value_error("As many x as y and z expected.");
    py::array_t<double> values(x.size());
    const int* const xs = x.data();
    const int* const ys = y.data();
    const int* const zs = z.data();
    double* const to = values.mutable_data();
    const py::ssize_t count = x.size();
    Unlocked([&] {
        for (py::ssize_t i = 0; i < count; ++i) to[i] = results.SafeValueGet(col, xs[i], ys[i], zs[i], missing);
    });
    return values;
}

}  // namespace

void DefineResults(py::module_& module) {
    using py::arg;
    py::class_<Results, ResultsPointer>(module, "ResultsData")
        .def_property_readonly("row_count", &Results::RowCount)
        .def_property_readonly("value_columns", &Results::ValuesColCount)
        .def_property_readonly("index_columns", &Results::IndicesColCount)
        .def("column_names", &ColumnNames)
        .def("values", &Values, arg("column"))
        .def("indices", &Indices)
        .def("at", &At, arg("column"), arg("x"), arg("y"), arg("z"), arg("missing"));
    module.def("read_results", &ReadWatched, arg("path"), arg("threads"), arg("progress"));
}

}  // namespace orvalo::python
