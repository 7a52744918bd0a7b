#pragma once

#include <optional>
#include <string>

#include <Orvalo3DReader/Model/Model.h>

#include "FileKind.h"
#include "export/ExportOptions.h"
#include "results/ResultsSelection.h"

/// Why a file cannot hold what is asked for, by its name's extension; nothing if it can.
std::optional<std::string> WhyNotExported(FileKind kind, const std::string& path);

/// The extensions of the files that hold models or results, for people.
std::string ExportedExtensions(FileKind kind);

/// Write a file in the form that its extension names, which WhyNotExported must accept. Throw OutputError, and
/// orvalo::Exception for what the form cannot hold.
void Export(const orvalo::Model& model, const std::string& path, const ExportOptions& options,
            ExportProgress& progress);
void Export(const ResultsSelection& selection, const std::string& path, const ExportOptions& options,
            ExportProgress& progress);
