#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// One character of a text as it may be shown on a terminal.
struct Glyph {
    /// The character itself, or a stand-in such as <1B> for what could steer the terminal or has no sure width.
    std::string text;
    /// Terminal columns that `text` takes.
    std::size_t width = 1;
    /// Bytes of the source that it stands for.
    std::size_t bytes = 1;
};

/// The first character of `text`, which must not be empty.
Glyph FirstGlyph(std::string_view text);

/// A whole text made fit for a terminal line.
std::string Harmless(std::string_view text);
