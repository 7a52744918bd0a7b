#include "FileKind.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>
#include <string>
#include <string_view>

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

bool BeginsWithNumber(const std::string& text) {
    char* end = nullptr;
    std::strtod(text.c_str(), &end);
    return end != text.c_str() && (*end == '\0' || std::string_view(" \t\r\n").find(*end) != std::string_view::npos);
}

bool BeginsAsTextResults(const std::string& head) {
    if (head.starts_with("x\ty\tz\tf\t")) return true;
    const std::size_t lineEnd = head.find('\n');
    return lineEnd != std::string::npos && BeginsWithNumber(head.substr(lineEnd + 1));
}

}  // namespace

FileKind DetectFileKind(const std::string& path) {
    const std::string head = ReadHead(path, headSize);
    if (head.starts_with("MATLAB ")) return FileKind::results;
    if (BeginsAsModel(head)) return FileKind::model;
    return BeginsAsTextResults(head) ? FileKind::results : FileKind::model;
}
