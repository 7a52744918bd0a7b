#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <Orvalo3DReader/Check/Diagnostic.h>
#include <Orvalo3DReader/Reader/InputPlace.h>

/// A line of an input file, with a part of it that is to be marked below.
struct MarkedLine {
    /// The line, or of a long one the surroundings of the mark, with tabs expanded and nothing in it that could steer a
    /// terminal.
    std::string text;
    /// Terminal columns before the mark.
    std::size_t indent = 0;
    /// Terminal columns of the mark; 0 where nothing of the line is to be marked.
    std::size_t marked = 0;
};

/// The line of a place in at most `width` columns, with `length` bytes from there on marked as far as they stand on
/// that line, and one column at least. Reads no more of the file than it shows. Nothing where the file cannot be read
/// again or is no text.
std::optional<MarkedLine> ExcerptAt(const orvalo::InputPlace& place, std::uint64_t length, std::size_t width);

/// The line, or lines, that a fix makes of the one it stands on, what it puts in being marked. Empty as for ExcerptAt.
std::vector<MarkedLine> MendedLines(const orvalo::Fix& fix, std::size_t width);
