#pragma once

#include <CLI/App.hpp>

#include "ExitStatus.h"

/// Adds `export` to the command line; run, it stores its outcome in `status`.
void AddExportCommand(CLI::App& app, ExitStatus& status);
