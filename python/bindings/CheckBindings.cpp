#include <atomic>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <pybind11/stl.h>

#include <Orvalo3DReader/Check/CheckModel.h>
#include <Orvalo3DReader/Check/CheckResults.h>

#include "Bindings.h"
#include "Failure.h"
#include "FileKind.h"
#include "Values.h"
#include "Watched.h"

namespace orvalo::python {

namespace {

using py::arg;

py::list NoteRecords(const std::vector<Note>& notes) {
    py::list records;
    for (const Note& note : notes) {
        records.append(py::dict(arg("message") = Text(note.message), arg("place") = PlaceTuple(note.place),
                                arg("length") = note.length));
    }
    return records;
}

py::list FixRecords(const std::vector<Fix>& fixes) {
    py::list records;
    for (const Fix& fix : fixes) {
        records.append(py::dict(arg("place") = PlaceTuple(fix.place), arg("length") = fix.length,
                                arg("replacement") = Text(fix.replacement)));
    }
    return records;
}

py::list DiagnosticRecords(const std::vector<Diagnostic>& diagnostics) {
    py::list records;
    for (const Diagnostic& found : diagnostics) {
        py::list expected;
        for (const std::string& word : found.expected) expected.append(Text(word));
        py::list includedFrom;
        for (const InputPlace& place : found.includedFrom) includedFrom.append(PlaceTuple(place));
        records.append(py::dict(
            arg("severity") = found.severity == Severity::Error ? "error" : "warning", arg("code") = found.code,
            arg("name") = CatalogueName(found.code), arg("rule") = Text(found.rule),
            arg("message") = Text(found.message), arg("place") = PlaceTuple(found.place), arg("length") = found.length,
            arg("row") = found.row, arg("expected") = expected, arg("notes") = NoteRecords(found.notes),
            arg("fixes") = FixRecords(found.fixes), arg("included_from") = includedFrom));
    }
    return records;
}

/// Whether the file holds results, or else a model, its content tells where `asResults` does not.
py::list CheckWatched(const py::bytes& path, std::optional<bool> asResults, bool warnings, bool firstOnly,
                      std::uint64_t perSection, unsigned threads, const py::object& progress) {
    const std::string file = path;
    const bool results = asResults ? *asResults : DetectFileKind(file) == FileKind::results;
    CubeProgress cubes(file, results ? py::none() : progress);
    float percent = 0.0F;
    std::atomic<bool> stop = false;
    CheckOptions options;
    options.warnings = warnings;
    options.firstOnly = firstOnly;
    options.perSection = perSection;
    options.threads = threads;
    options.cubesRead = progress.is_none() ? nullptr : cubes.Counter();
    options.percentRead = progress.is_none() ? nullptr : &percent;
    options.stop = &stop;
    std::vector<Diagnostic> found;
    const auto fraction = [&] {
        return results ? std::atomic_ref(percent).load(std::memory_order_relaxed) / 100.0 : cubes.Fraction();
    };
    RunWatched([&] { found = results ? CheckResults(file, options) : CheckModel(file, options); }, fraction, stop,
               progress);
    return DiagnosticRecords(found);
}

}  // namespace

void DefineChecks(py::module_& module) {
    module.def("check", &CheckWatched, arg("path"), arg("results"), arg("warnings"), arg("first_only"),
               arg("per_section"), arg("threads"), arg("progress"));
}

}  // namespace orvalo::python
