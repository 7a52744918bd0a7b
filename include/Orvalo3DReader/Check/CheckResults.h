#pragma once

#include <string>
#include <vector>

#include <Orvalo3DReader/Check/CheckOptions.h>
#include <Orvalo3DReader/Check/Diagnostic.h>
#include <Orvalo3DReader/Export.h>

namespace orvalo {

/// All that is wrong with the results file of that path, text or MAT-file; nothing for a good one. The first error has
/// the code and the message of the one that ResultsReader throws, and a place in the file beside it: the text that
/// stands instead of a number, what is missing or too much, or the field of a MAT-file that differs from the accepted
/// form. A MAT-file counts as one line: its column is the offset plus 1. The row is the one of a text, and 0 in a
/// MAT-file.
///
/// A text is read to its end: every line that is no row is told, at most `perSection` of each code. A file that cannot
/// be read twice, such as a pipe, has its error without a place.
///
/// Throws Stopped, and OutOfMemory where memory does not suffice for the check itself.
ORVALO3DREADER_EXPORT std::vector<Diagnostic> CheckResults(const std::string& path, const CheckOptions& options = {});

}  // namespace orvalo
