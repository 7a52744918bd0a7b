#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include <Orvalo3DReader/Check/Diagnostic.h>

namespace orvalo {

/// A text that stands in a row of results instead of a number.
struct ResultsField {
    bool isIndex = false;
    /// From 0.
    unsigned int column = 0;
    std::string_view text;
    /// The byte of it that is no part of a number.
    std::size_t odd = 0;
};

/// "Column 5 ('ux') holds '1,5', which is no number"
std::string Held(const ResultsField& field, const std::string& columnName);

/// Tells what is wrong with the field, which the diagnostic is about, and what to write instead.
void ExplainField(Diagnostic& diagnostic, const ResultsField& field, const std::string& columnName);

}  // namespace orvalo
