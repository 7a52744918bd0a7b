#include "DiagnosticCell.h"

#include <array>
#include <cctype>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

#include "PathText.h"

namespace {

constexpr std::size_t longestLine = 4096;

/// The line of a place; empty where it cannot be read, or is a very long one.
std::string LineOf(const orvalo::InputPlace& place) {
    std::ifstream file(PathOf(place.path), std::ios::binary);
    if (!file || place.column > longestLine) return "";
    file.seekg(static_cast<std::streamoff>(place.offset - (place.column - 1)));
    std::string line(longestLine, '\0');
    file.read(line.data(), longestLine);
    line.resize(static_cast<std::size_t>(file.gcount()));
    return line.substr(0, line.find('\n'));
}

std::optional<orvalo::Point> FirstCell(std::string_view text) {
    constexpr std::string_view separators = " \t,=";
    std::array<short, 3> cell{};
    for (short& coordinate : cell) {
        text.remove_prefix(std::min(text.find_first_not_of(separators), text.size()));
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), coordinate);
        if (error != std::errc()) return std::nullopt;
        text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    }
    return orvalo::Point{cell[0], cell[1], cell[2]};
}

}  // namespace

std::optional<orvalo::Point> CellOf(const orvalo::Diagnostic& diagnostic) {
    if (!diagnostic.place.Known()) return std::nullopt;
    std::string line = LineOf(diagnostic.place);
    if (diagnostic.row > 0) return FirstCell(line);
    for (char& c : line) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    constexpr std::string_view word = "position";
    const std::size_t found = line.find(word);
    return found == std::string::npos ? std::nullopt : FirstCell(std::string_view(line).substr(found + word.size()));
}
