#include "FileKind.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "ModelWords.h"

namespace {

// Room for a header line of the longest length that results may have, and the start of the line after it.
constexpr std::size_t headSize = 1 << 17;

constexpr std::array<std::string_view, 11> openingWords = {
    "analysis", "materials", "cubes", "actuator", "piezo", "sensor", "dump", "table", "set", "damping", "include"};

bool BeginsAsModel(const std::string& head) {
    const std::string word = ModelWords(head).Next();
    return std::find(openingWords.begin(), openingWords.end(), word) != openingWords.end();
}

using Fields = std::vector<std::string>;

Fields Split(std::string_view line, std::string_view separators) {
    Fields fields(1);
    for (const char c : line) {
        if (separators.find(c) == std::string_view::npos) {
            fields.back() += c;
        } else {
            fields.emplace_back();
        }
    }
    return fields;
}

bool IsNumber(const std::string& text) {
    char* end = nullptr;
    std::strtod(text.c_str(), &end);
    return end != text.c_str() && *end == '\0';
}

std::string_view FirstLine(std::string_view text) {
    text = text.substr(0, text.find('\n'));
    return text.substr(0, text.find('\r'));
}

// Names between tabs and below them as many numbers. Where the first word may begin a model only that will do; where
// it may not, several names do alone.
bool BeginsAsTextResults(const std::string& head) {
    if (head.starts_with("x\ty\tz\tf\t")) return true;
    const std::size_t lineEnd = head.find('\n');
    if (lineEnd == std::string::npos) return false;
    const Fields names = Split(FirstLine(head), "\t");
    if (std::any_of(names.begin(), names.end(), IsNumber)) return false;
    const Fields row = Split(FirstLine(std::string_view(head).substr(lineEnd + 1)), "\t ");
    const bool rowFits = row.size() == names.size() && std::all_of(row.begin(), row.end(), IsNumber);
    if (BeginsAsModel(head)) return names.size() > 1 && rowFits;
    return names.size() > 1 || (rowFits && names.front().find(' ') == std::string::npos);
}

}  // namespace

FileKind DetectFileKind(const std::string& path) {
    const std::string head = ReadHead(path, headSize);
    if (head.starts_with("MATLAB ")) return FileKind::results;
    return BeginsAsTextResults(head) ? FileKind::results : FileKind::model;
}
