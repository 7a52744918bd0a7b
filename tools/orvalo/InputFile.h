#pragma once

#include <memory>
#include <optional>
#include <string>

#include <Orvalo3DReader/Model/Model.h>
#include <Orvalo3DReader/Results/Results.h>

#include "CheckedFile.h"
#include "ExitStatus.h"
#include "FileKind.h"

/// How a file is to be read.
struct ReadSettings {
    /// Told rather than guessed.
    std::optional<FileKind> kind;
    bool cubesOnly = false;
    /// Whether models are checked first, for warnings and for all that is wrong. Otherwise they are only if they cannot
    /// be read.
    bool check = true;
    /// 0 for as many as there are processors.
    unsigned threads = 0;
};

/// A file named on the command line and what became of reading it.
struct InputFile {
    InputFile(const std::string& name, const std::optional<FileKind>& told) : checked(name, told) {}

    /// What is wrong with it: errors, or the warnings about a model that was read.
    CheckedFile checked;
    /// Set when a model was read without an error.
    std::unique_ptr<orvalo::Model> model;
    /// Set when results were read without an error.
    std::unique_ptr<orvalo::Results> results;
    /// Wall-clock time that the library took to read it.
    double seconds = 0.0;

    bool Good() const { return model != nullptr || results != nullptr; }
    ExitStatus Status() const { return checked.Status(); }
};

/// Reads a file, with a progress bar if that takes long; of which kind it is, is guessed if not told. Never throws for
/// what is wrong with a file, but Interrupted.
InputFile ReadInputFile(const std::string& name, const ReadSettings& settings);
