#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Results/TextRow.h"

namespace orvalo {

/// What the first line of text results was likely meant to name, where that is something else than it does.
struct MeantColumns {
    TextColumns columns;
    /// Why they are not named, in a sentence, and the bytes of the line that it is about.
    std::string why;
    std::size_t at = 0;
    std::size_t length = 0;
    /// What the line is to be replaced by; nothing where the rows would have to be changed too.
    std::optional<std::string> line;
};

/// Nothing for a line that is as it should be.
std::optional<MeantColumns> FindMeantColumns(std::string_view line);

class ResultsFindings;

/// Warns of a first line that names no indices, though it nearly does: the file can be read all the same.
void WarnOfHeader(ResultsFindings& findings, std::string_view line);

/// How many texts stand between tabs, blanks, commas and semicolons.
std::size_t CountFields(std::string_view line);

/// The names with tabs between them.
std::string JoinedNames(const std::vector<std::string>& names);

}  // namespace orvalo
