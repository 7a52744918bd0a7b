#pragma once

#include <memory>
#include <string>
#include <vector>

#include <Orvalo3DReader/Model/Model.h>
#include <Orvalo3DReader/Results/Results.h>

#include "ExitStatus.h"
#include "FileKind.h"
#include "Problem.h"

/// A file named on the command line and what became of reading it.
struct InputFile {
    std::string path;
    FileKind kind = FileKind::model;
    /// What is wrong with it: an error, or the temperature warnings.
    std::vector<Problem> problems;
    /// Set when a model was read without an error.
    std::unique_ptr<orvalo::Model> model;
    /// Set when results were read without an error.
    std::unique_ptr<orvalo::Results> results;
    /// Wall-clock time that the library took.
    double seconds = 0.0;

    bool Good() const { return model != nullptr || results != nullptr; }
    ExitStatus Status() const;
};

/// Reads a file of either kind, with a progress bar if that takes long. Never throws for what is wrong with a file.
InputFile ReadInputFile(const std::string& path, bool cubesOnly);

/// The same for a file that must hold results.
InputFile ReadResultsFile(const std::string& path);
