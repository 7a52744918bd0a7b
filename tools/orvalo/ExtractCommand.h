#pragma once

#include <CLI/App.hpp>

#include "ExitStatus.h"

/// Adds `extract` to the command line; run, it stores its outcome in `status`.
void AddExtractCommand(CLI::App& app, ExitStatus& status);
