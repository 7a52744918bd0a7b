#pragma once

#include <string>
#include <vector>

#include "ExitStatus.h"
#include "TextStyle.h"

/// Prints what rules mean, each with a bad and a good example: the one of a name, those of a code, or "all".
ExitStatus PrintRules(const std::string& nameOrCode, bool markdown, const TextStyle& style);

/// The names of all rules.
std::vector<std::string> RuleNames();
