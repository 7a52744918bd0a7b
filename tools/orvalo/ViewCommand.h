#pragma once

#include <CLI/App.hpp>

#include "ExitStatus.h"

/// Adds `view` to the command line; run, it stores its outcome in `status`.
void AddViewCommand(CLI::App& app, ExitStatus& status);
