#pragma once

#include <optional>
#include <string>

#include <Orvalo3DReader/Reader/InputPlace.h>

/// The line of an input file around a place, as shown below a diagnostic.
struct SourceExcerpt {
    /// The line, or of a long one the part around the place, with tabs expanded and nothing in it that could steer a
    /// terminal.
    std::string text;
    /// Terminal columns before the place.
    std::size_t indent = 0;
};

/// Reads no more of the file than it shows. Nothing where the file cannot be read again.
std::optional<SourceExcerpt> ExcerptAt(const orvalo::InputPlace& place);
