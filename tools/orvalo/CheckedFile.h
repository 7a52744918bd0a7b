#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include <Orvalo3DReader/Check/CheckOptions.h>
#include <Orvalo3DReader/Check/Diagnostic.h>
#include <Orvalo3DReader/Common/Exception.h>

#include "ExitStatus.h"
#include "FileKind.h"
#include "Input.h"

/// How files are to be checked.
struct CheckSettings {
    bool warnings = true;
    bool firstOnly = false;
    bool warningsAreErrors = false;
    /// Whether directories stand for the models in them.
    bool recursive = false;
    /// Names of rules whose warnings are not wanted.
    std::set<std::string> disabled;
    /// Told rather than guessed.
    std::optional<FileKind> kind;
    /// 0 for as many as there are processors.
    unsigned threads = 0;
};

/// A file named on the command line and what is wrong with it.
struct CheckedFile {
    explicit CheckedFile(const std::string& name, const std::optional<FileKind>& told = std::nullopt);

    /// Adds what the library threw, for what only reading finds.
    void Add(const orvalo::Exception& exception);
    std::size_t Errors() const;
    std::size_t Warnings() const { return diagnostics.size() - Errors(); }
    ExitStatus Status() const;

    Input input;
    FileKind kind;
    std::vector<orvalo::Diagnostic> diagnostics;
};

/// Checks a file, with a progress bar if that takes long. Never throws for what is wrong with it, but Interrupted.
CheckedFile CheckFile(const std::string& name, const CheckSettings& settings);

/// Checks a file of which the kind is known and adds what was found.
void Check(CheckedFile& file, const CheckSettings& settings);
