#pragma once

#include <Orvalo3DReader/Check/Diagnostic.h>

namespace orvalo {

class ErrorCollector;

/// Adds to an error, as it is noted, what was expected there and what to write instead: words, notes, fixes, and the
/// length of what it is about.
void Explain(Diagnostic& diagnostic, ErrorCollector& errors);

/// Adds to the errors what is known only once all was read: what else is defined, and where.
void ExplainAtEnd(ErrorCollector& errors);

}  // namespace orvalo
