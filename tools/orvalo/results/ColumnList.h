#pragma once

#include <optional>
#include <string>
#include <vector>

#include <CLI/App.hpp>

#include "results/ResultsTable.h"

/// Adds `--columns`.
void AddColumnsOption(CLI::App& command, std::vector<std::string>& columns);

/// The numbers of the columns asked for, all if none is. Nothing where one does not exist, which is then told on
/// standard error.
std::optional<std::vector<unsigned int>> SelectColumns(const ResultsTable& table, const std::vector<std::string>& asked,
                                                       const std::string& fileName);
