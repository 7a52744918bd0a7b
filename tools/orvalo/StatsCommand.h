#pragma once

#include <CLI/App.hpp>

#include "ExitStatus.h"

/// Adds `stats` to the command line; run, it stores its outcome in `status`.
void AddStatsCommand(CLI::App& app, ExitStatus& status);
