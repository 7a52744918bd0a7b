#pragma once

#include <string>

#include "export/ExportOptions.h"
#include "results/ResultsSelection.h"

/// Writes rows as a NumPy array of records, with a field for each column.
void WriteNpy(const ResultsSelection& selection, const std::string& path, const ExportOptions& options,
              ExportProgress& progress);

/// Writes `indices` (whole numbers, a row each), `values` (likewise), and `columns`, the names of the latter, as NumPy
/// arrays in a ZIP archive.
void WriteNpz(const ResultsSelection& selection, const std::string& path, const ExportOptions& options,
              ExportProgress& progress);
