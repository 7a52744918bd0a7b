#pragma once

#include <CLI/App.hpp>

#include "ExitStatus.h"

/// Adds `diff` to the command line; run, it stores its outcome in `status`.
void AddDiffCommand(CLI::App& app, ExitStatus& status);
