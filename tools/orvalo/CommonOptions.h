#pragma once

#include <string>

#include <CLI/App.hpp>

#include <Orvalo3DReader/Common/Exception.h>

#include "DiagnosticText.h"
#include "InputFile.h"
#include "TextStyle.h"

/// Adds `--threads`.
inline void AddThreadsOption(CLI::App& command, unsigned& threads) {
    command.add_option("--threads", threads, "How many threads may work; as many as there are processors if not given")
        ->option_text("N");
}

/// Reads a file for a command that needs it whole. What is wrong with it goes to standard error.
inline InputFile ReadOrReport(const std::string& name, const ReadSettings& settings, ColourMode colour) {
    InputFile file = ReadInputFile(name, settings);
    if (!file.Good()) PrintDiagnostics(file.checked.input, file.checked.diagnostics, TextStyle(stderr, colour));
    return file;
}
