#pragma once

#include <CLI/App.hpp>

#include "ExitStatus.h"

/// Adds `format` to the command line; run, it stores its outcome in `status`.
void AddFormatCommand(CLI::App& app, ExitStatus& status);
