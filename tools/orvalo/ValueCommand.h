#pragma once

#include <CLI/App.hpp>

#include "ExitStatus.h"

/// Adds `value` to the command line; run, it stores its outcome in `status`.
void AddValueCommand(CLI::App& app, ExitStatus& status);
