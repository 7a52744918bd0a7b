#include "SourceExcerpt.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "HarmlessText.h"
#include "ModelWords.h"
#include "PathText.h"

namespace {

constexpr std::size_t reach = 1000;
constexpr std::size_t tabStop = 8;
constexpr std::size_t leastWidth = 20;
constexpr std::string_view ellipsis = "...";

/// A line in three parts, each cut short where it is very long.
struct LineParts {
    std::string before;
    std::string marked;
    std::string after;
    bool cutBefore = false;
    bool cutAfter = false;
    /// Whether this is no line, but what comes after the last one.
    bool nothing = false;
};

/// Bytes of a file from an offset on, fewer at its end; nothing where they cannot be read.
std::optional<std::string> ReadBytes(const std::string& path, std::uint64_t offset, std::size_t count) {
    std::ifstream file(PathOf(path), std::ios::binary);
    file.seekg(static_cast<std::streamoff>(offset));
    std::string bytes(count, '\0');
    file.read(bytes.data(), static_cast<std::streamsize>(count));
    if (file.bad() || (file.fail() && !file.eof())) return std::nullopt;
    bytes.resize(static_cast<std::size_t>(file.gcount()));
    return bytes;
}

/// Takes what follows up to the end of the line.
void SetAfter(LineParts& parts, std::string bytes) {
    const std::size_t lineEnd = bytes.find('\n');
    parts.cutAfter = lineEnd == std::string::npos && bytes.size() >= reach;
    bytes.resize(std::min(lineEnd, bytes.size()));
    if (bytes.ends_with('\r')) bytes.pop_back();
    parts.after = std::move(bytes);
}

/// Whether a file that begins so is a MAT-file, of any version, and has no lines.
bool IsBinary(std::string_view head) {
    return head == "MATLAB " || head.starts_with("\x89HDF");
}

/// The line of a place, in front of it and after it, where `skipped` bytes from it on are left out.
std::optional<LineParts> ReadLine(const orvalo::InputPlace& place, std::uint64_t skipped) {
    if (!MayBeReread(place.path) || IsBinary(ReadHead(place.path, 7))) return std::nullopt;
    LineParts parts;
    const std::uint64_t inLine = std::min(place.column - 1, place.offset);
    const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(inLine, reach));
    auto before = ReadBytes(place.path, place.offset - wanted, wanted);
    if (!before || before->size() < wanted) return std::nullopt;
    parts.before = std::move(*before);
    parts.cutBefore = inLine > wanted;
    std::string after = ReadBytes(place.path, place.offset + skipped, reach).value_or("");
    parts.nothing = inLine == 0 && after.empty();
    SetAfter(parts, std::move(after));
    return parts;
}

using Glyphs = std::vector<Glyph>;

void AddGlyphs(Glyphs& glyphs, std::string_view text, std::size_t& column) {
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
}

/// How many glyphs from the start of the range fit into a width, which is lessened by theirs.
template <typename Iterator>
std::size_t Fit(Iterator first, Iterator last, std::size_t& width) {
    std::size_t count = 0;
    for (; first != last && first->width <= width; ++first, ++count) width -= first->width;
    return count;
}

/// The part of a line that is shown: glyphs from `first` to before `last`.
struct Window {
    std::size_t first = 0;
    std::size_t last = 0;
};

/// As much of the mark as fits, then of both sides alike; what one side does not need goes to the other.
Window Choose(const Glyphs& glyphs, std::size_t markFirst, std::size_t markLast, std::size_t width) {
    const auto at = [&](std::size_t index) { return glyphs.begin() + static_cast<std::ptrdiff_t>(index); };
    const auto back = [&](std::size_t index) { return std::make_reverse_iterator(at(index)); };
    Window window{markFirst, markFirst};
    window.last += Fit(at(markFirst), at(markLast), width);
    std::size_t half = width / 2;
    width -= half;
    window.first -= Fit(back(markFirst), glyphs.rend(), half);
    width += half;
    window.last += Fit(at(window.last), glyphs.end(), width);
    window.first -= Fit(back(window.first), glyphs.rend(), width);
    return window;
}

std::size_t Width(const Glyphs& glyphs, std::size_t first, std::size_t last) {
    std::size_t width = 0;
    for (std::size_t i = first; i < last; ++i) width += glyphs[i].width;
    return width;
}

MarkedLine LayOut(const LineParts& parts, std::size_t width) {
    Glyphs glyphs;
    std::size_t column = 0;
    AddGlyphs(glyphs, parts.before, column);
    const std::size_t markFirst = glyphs.size();
    AddGlyphs(glyphs, parts.marked, column);
    const std::size_t markLast = glyphs.size();
    AddGlyphs(glyphs, parts.after, column);

    // A mark without a glyph, past the end of a line, takes a column too.
    width = std::max(width, leastWidth) - (markFirst == glyphs.size() ? 1 : 0);
    Window window{0, glyphs.size()};
    if (parts.cutBefore || parts.cutAfter || column > width) {
        window = Choose(glyphs, markFirst, markLast, width - 2 * ellipsis.size());
    }
    MarkedLine line;
    if (parts.cutBefore || window.first > 0) line.text = ellipsis;
    line.indent = line.text.size() + Width(glyphs, window.first, markFirst);
    line.marked = Width(glyphs, markFirst, std::min(markLast, window.last));
    for (std::size_t i = window.first; i < window.last; ++i) line.text += glyphs[i].text;
    if (parts.cutAfter || window.last < glyphs.size()) line.text += ellipsis;
    return line;
}

}  // namespace

std::optional<MarkedLine> ExcerptAt(const orvalo::InputPlace& place, std::uint64_t length, std::size_t width) {
    auto parts = ReadLine(place, 0);
    if (!parts) return std::nullopt;
    const auto marked = static_cast<std::size_t>(std::min<std::uint64_t>(length, parts->after.size()));
    parts->marked = parts->after.substr(0, marked);
    parts->after.erase(0, marked);
    if (parts->nothing) parts->after = "(end of the file)";
    MarkedLine line = LayOut(*parts, width);
    line.marked = std::max<std::size_t>(line.marked, 1);
    return line;
}

std::vector<MarkedLine> MendedLines(const orvalo::Fix& fix, std::size_t width) {
    std::vector<MarkedLine> lines;
    auto parts = ReadLine(fix.place, fix.length);
    if (!parts) return lines;
    std::string_view rest = fix.replacement;
    for (std::size_t end = rest.find('\n'); end != std::string_view::npos; end = rest.find('\n')) {
        lines.push_back(
            LayOut({parts->before, std::string(rest.substr(0, end)), "", parts->cutBefore, false, false}, width));
        parts->before.clear();
        parts->cutBefore = false;
        rest.remove_prefix(end + 1);
    }
    parts->marked = rest;
    lines.push_back(LayOut(*parts, width));
    return lines;
}
