#pragma once

#include <CLI/App.hpp>

#include "ExitStatus.h"

/// Adds `check` to the command line; run, it stores its outcome in `status`.
void AddCheckCommand(CLI::App& app, ExitStatus& status);
