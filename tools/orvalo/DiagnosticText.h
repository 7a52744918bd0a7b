#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include <Orvalo3DReader/Check/Diagnostic.h>

#include "Input.h"
#include "TextStyle.h"

/// Writes what is wrong with a file to standard error in the form of compilers: place, severity, message, code or rule;
/// the source line with the place marked; the line as it would be right; notes with places of their own.
void PrintDiagnostics(const Input& input, const std::vector<orvalo::Diagnostic>& diagnostics, const TextStyle& style);

/// Such as "3 errors and 1 warning in 2 files".
std::string CountsText(std::size_t errors, std::size_t warnings, std::size_t files);
