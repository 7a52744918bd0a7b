#include <algorithm>
#include <new>
#include <utility>
#include <vector>

#include <Orvalo3DReader/Check/CheckModel.h>
#include <Orvalo3DReader/Common/Stopped.h>

#include "Check/ErrorCollector.h"
#include "Check/Explain.h"
#include "Check/ModelWarnings.h"
#include "Common/WithinMemory.h"
#include "Reader/ModelReader.h"

namespace orvalo {

namespace {

/// Puts diagnostics into the order in which their places are read; those of one place stay as they were found.
std::vector<Diagnostic> InFileOrder(std::vector<PlacedDiagnostic> found, const ReadingRecord& record) {
    std::stable_sort(found.begin(), found.end(), [&](const PlacedDiagnostic& a, const PlacedDiagnostic& b) {
        return record.Before(a.place, b.place);
    });
    std::vector<Diagnostic> ordered;
    ordered.reserve(found.size());
    for (PlacedDiagnostic& placed : found) ordered.push_back(std::move(placed.diagnostic));
    return ordered;
}

std::vector<Diagnostic> Check(const std::string& path, const CheckOptions& options) {
    Model model;
    ModelReader reader(path, false);
    reader.TraceCurrentCube(options.cubesRead);
    reader.StopOn(options.stop);
    reader.Threads(options.threads);
    ErrorCollector errors(reader.Core(), options);
    reader.RecoverWith(&errors);
    try {
        reader.Execute(model, true);
    } catch (const Stopped&) {
        throw;
    } catch (const Exception&) {
        // Noted, as every other error.
    }
    errors.UpdateFiles();
    ExplainAtEnd(errors);
    const bool whole = errors.ErrorCount() == 0 || !options.firstOnly;
    if (options.warnings && whole) AddModelWarnings(model, path, options, errors);
    return InFileOrder(std::move(errors.diagnostics), errors.record);
}

}  // namespace

std::vector<Diagnostic> CheckModel(const std::string& path, const CheckOptions& options) {
    return WithinMemory(module::Reader, __LINE__, [&] { return Check(path, options); });
}

}  // namespace orvalo
