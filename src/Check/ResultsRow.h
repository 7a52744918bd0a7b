#pragma once

#include <Orvalo3DReader/Check/Diagnostic.h>

#include "Results/TextRow.h"

namespace orvalo {

/// Explains why a line is no row of these columns. The diagnostic's place is the start of the line; it becomes that of
/// the text that stands instead of a number, of what is too much, or of the end of the line.
void ExplainRow(Diagnostic& diagnostic, const TextLine& line, const TextColumns& columns);

}  // namespace orvalo
