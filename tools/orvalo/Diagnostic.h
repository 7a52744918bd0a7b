#pragma once

#include <nlohmann/json.hpp>

#include "InputFile.h"

/// Writes the problems of a file to standard error in the form of compilers: place, severity, message, code, then the
/// source line with a caret under the place.
void PrintProblems(const InputFile& file);

/// The same as a JSON array. What a problem does not have, such as the place of a warning, is null.
nlohmann::ordered_json ProblemsToJson(const InputFile& file);
