#pragma once

#include <string>
#include <vector>

#include <Orvalo3DReader/Check/CheckOptions.h>
#include <Orvalo3DReader/Check/Diagnostic.h>
#include <Orvalo3DReader/Export.h>

namespace orvalo {

/// All that is wrong with the results file of that path, text or MAT-file; nothing for a good one. The first error has
/// the code and the message of the one that ResultsReader throws, and a place in the file beside it.
///
/// Throws Stopped, and OutOfMemory where memory does not suffice for the check itself.
ORVALO3DREADER_EXPORT std::vector<Diagnostic> CheckResults(const std::string& path, const CheckOptions& options = {});

}  // namespace orvalo
