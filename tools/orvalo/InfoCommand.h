#pragma once

#include <CLI/App.hpp>

#include "ExitStatus.h"

/// Adds `info` to the command line; run, it stores its outcome in `status`.
void AddInfoCommand(CLI::App& app, ExitStatus& status);
