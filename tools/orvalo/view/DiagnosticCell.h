#pragma once

#include <optional>

#include <Orvalo3DReader/Check/Diagnostic.h>
#include <Orvalo3DReader/Model/Point.h>

/// The cell that a diagnostic of a model is about, if the line of the file that it names gives one: in a row of cells,
/// or after the word `position`.
std::optional<orvalo::Point> CellOf(const orvalo::Diagnostic& diagnostic);
