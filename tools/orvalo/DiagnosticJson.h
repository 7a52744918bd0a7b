#pragma once

#include <nlohmann/json.hpp>

#include "CheckedFile.h"

/// What scripts are told of a file that was checked: docs/json.md has it field by field.
nlohmann::ordered_json ToJson(const CheckedFile& file);
