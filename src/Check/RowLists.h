#pragma once

#include <cstdint>
#include <string>

#include <Orvalo3DReader/Check/Diagnostic.h>

namespace orvalo {

class ErrorCollector;

/// The rows of a section as they are meant: what stands in each.
struct RowList {
    std::uint64_t width = 0;
    std::string fields;
    /// Whether a temperature may follow, and does.
    bool mayHaveTemperatures = false;
    bool hasTemperatures = false;
};

/// The list of the current section; a width of 0 where it has none.
RowList CurrentRows(const ErrorCollector& errors);

/// Tells, once in a section, of the first line up to the error whose numbers are no whole rows: there the list lost its
/// step, whatever went wrong later.
bool ExplainRowShape(Diagnostic& diagnostic, ErrorCollector& errors);

/// Tells of a comment before the place, or an include, among the rows.
bool ExplainForeignText(Diagnostic& diagnostic, ErrorCollector& errors);

/// What the rows, points or samples of a section are called.
const char* RowWord(const ErrorCollector& errors);

}  // namespace orvalo
