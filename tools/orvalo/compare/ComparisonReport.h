#pragma once

#include <string>

#include <nlohmann/json.hpp>

#include "compare/ModelComparison.h"
#include "compare/ResultsComparison.h"
#include "results/ResultsTable.h"

/// What scripts are told: docs/results-tools.md has it member by member. Numbers that are not finite become null.
nlohmann::ordered_json ToJson(const ModelComparison& comparison);
nlohmann::ordered_json ToJson(const ResultsComparison& comparison, const ResultsTable& a, const ResultsTable& b);

/// What people are told, as indented lines. Empty for models that are equal.
std::string ToText(const ModelComparison& comparison);
std::string ToText(const ResultsComparison& comparison, const ResultsTable& a, const ResultsTable& b);
