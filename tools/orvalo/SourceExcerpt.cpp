#include "SourceExcerpt.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "HarmlessText.h"
#include "ModelWords.h"

namespace {

constexpr std::size_t reach = 400;
constexpr std::size_t widthBefore = 50;
constexpr std::size_t widthAfter = 50;
constexpr std::size_t tabStop = 8;
constexpr std::string_view ellipsis = "...";

/// What surrounds a place within its line.
struct Surroundings {
    std::string before;
    std::string after;
    bool cutBefore = false;
    bool cutAfter = false;
};

std::optional<Surroundings> ReadAround(const orvalo::InputPlace& place) {
    if (!MayBeReread(place.path)) return std::nullopt;
    std::ifstream file(place.path, std::ios::binary);
    const std::uint64_t inLine = std::min(place.column - 1, place.offset);
    const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(inLine, reach));
    file.seekg(static_cast<std::streamoff>(place.offset - wanted));
    std::string bytes(wanted + reach, '\0');
    file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    const auto count = static_cast<std::size_t>(file.gcount());
    if (file.bad() || count < wanted) return std::nullopt;
    bytes.resize(count);

    Surroundings around;
    around.before = bytes.substr(0, wanted);
    around.cutBefore = inLine > wanted;
    around.after = bytes.substr(wanted);
    const std::size_t lineEnd = around.after.find('\n');
    around.cutAfter = lineEnd == std::string::npos && around.after.size() == reach;
    around.after.resize(std::min(lineEnd, around.after.size()));
    if (around.after.ends_with('\r')) around.after.pop_back();
    return around;
}

std::size_t TotalWidth(const std::vector<Glyph>& glyphs) {
    std::size_t width = 0;
    for (const Glyph& glyph : glyphs) width += glyph.width;
    return width;
}

std::vector<Glyph> ToGlyphs(std::string_view text, std::size_t column) {
    std::vector<Glyph> glyphs;
    while (!text.empty()) {
        Glyph glyph = FirstGlyph(text);
        if (text[0] == '\t') {
            glyph.width = tabStop - column % tabStop;
            glyph.text.assign(glyph.width, ' ');
        }
        column += glyph.width;
        text.remove_prefix(glyph.bytes);
        glyphs.push_back(std::move(glyph));
    }
    return glyphs;
}

// How many glyphs from the start of the range fit into a width.
template <typename Iterator>
std::size_t Fitting(Iterator first, Iterator last, std::size_t width) {
    std::size_t count = 0;
    for (; first != last && first->width <= width; ++first, ++count) width -= first->width;
    return count;
}

std::string Join(const std::vector<Glyph>& glyphs, std::size_t first, std::size_t count) {
    std::string text;
    for (std::size_t i = first; i < first + count; ++i) text += glyphs[i].text;
    return text;
}

}  // namespace

std::optional<SourceExcerpt> ExcerptAt(const orvalo::InputPlace& place) {
    const std::optional<Surroundings> around = ReadAround(place);
    if (!around) return std::nullopt;
    const std::vector<Glyph> before = ToGlyphs(around->before, 0);
    const std::vector<Glyph> after = ToGlyphs(around->after, TotalWidth(before));
    const std::size_t shownBefore = Fitting(before.rbegin(), before.rend(), widthBefore);
    const std::size_t shownAfter = Fitting(after.begin(), after.end(), widthAfter);

    SourceExcerpt excerpt;
    if (around->cutBefore || shownBefore < before.size()) excerpt.text = ellipsis;
    const std::vector<Glyph> lead(before.end() - static_cast<std::ptrdiff_t>(shownBefore), before.end());
    excerpt.indent = excerpt.text.size() + TotalWidth(lead);
    excerpt.text += Join(lead, 0, lead.size()) + Join(after, 0, shownAfter);
    if (around->cutAfter || shownAfter < after.size()) excerpt.text += ellipsis;
    return excerpt;
}
