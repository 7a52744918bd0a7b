#include "HarmlessText.h"

#include <cstddef>
#include <string>
#include <string_view>

#include <fmt/format.h>

namespace {

// Letters of the Latin, Greek and Cyrillic scripts, typographic dashes and quotes: one column wide on every terminal,
// and free of control functions.
bool IsPlain(unsigned int codePoint) {
    return (codePoint >= 0xA1 && codePoint <= 0x2FF && codePoint != 0xAD) ||
           (codePoint >= 0x391 && codePoint <= 0x3C9) || (codePoint >= 0x400 && codePoint <= 0x45F) ||
           (codePoint >= 0x2010 && codePoint <= 0x2027) || codePoint == 0x2212;
}

// The character that `bytes` bytes at the start of a text encode; 0 where they do not.
unsigned int Decode(std::string_view text, std::size_t bytes) {
    if (text.size() < bytes) return 0;
    unsigned int codePoint = static_cast<unsigned char>(text[0]) & (0x7FU >> bytes);
    for (std::size_t i = 1; i < bytes; ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if ((byte & 0xC0U) != 0x80U) return 0;
        codePoint = (codePoint << 6) | (byte & 0x3FU);
    }
    return codePoint;
}

}  // namespace

Glyph FirstGlyph(std::string_view text) {
    const auto lead = static_cast<unsigned char>(text[0]);
    if (lead >= 0x20 && lead < 0x7F) return {std::string(1, text[0]), 1, 1};
    // All plain characters are encoded in two or three bytes.
    const std::size_t bytes = lead >= 0xC2 && lead < 0xE0 ? 2 : lead >= 0xE0 && lead < 0xF0 ? 3 : 0;
    if (bytes > 0 && IsPlain(Decode(text, bytes))) return {std::string(text.substr(0, bytes)), 1, bytes};
    return {fmt::format("<{:02X}>", lead), 4, 1};
}

std::string Harmless(std::string_view text) {
    std::string shown;
    while (!text.empty()) {
        const Glyph glyph = FirstGlyph(text);
        shown += glyph.text;
        text.remove_prefix(glyph.bytes);
    }
    return shown;
}
