#include "HarmlessText.h"

#include <cstddef>
#include <string>
#include <string_view>

#include <fmt/format.h>

namespace {

// Letters of the Latin, Greek and Cyrillic scripts: one column wide on every terminal, and free of control functions.
bool IsPlainLetter(unsigned int codePoint) {
    return (codePoint >= 0xA1 && codePoint <= 0x2FF && codePoint != 0xAD) ||
           (codePoint >= 0x391 && codePoint <= 0x3C9) || (codePoint >= 0x400 && codePoint <= 0x45F);
}

bool IsContinuation(char c) {
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

}  // namespace

Glyph FirstGlyph(std::string_view text) {
    const auto lead = static_cast<unsigned char>(text[0]);
    if (lead >= 0x20 && lead < 0x7F) return {std::string(1, text[0]), 1, 1};
    // All plain letters are encoded in two bytes.
    if (lead >= 0xC2 && lead < 0xE0 && text.size() > 1 && IsContinuation(text[1])) {
        const unsigned int codePoint = ((lead & 0x1FU) << 6) | (static_cast<unsigned char>(text[1]) & 0x3FU);
        if (IsPlainLetter(codePoint)) return {std::string(text.substr(0, 2)), 1, 2};
    }
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
