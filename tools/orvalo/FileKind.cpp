#include "FileKind.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "ModelWords.h"
#include "NearestWord.h"

namespace {

// Room for a header line of the longest length that results may have, and the start of the line after it.
constexpr std::size_t headSize = 1 << 17;

const std::vector<std::string> openingWords = {"analysis", "materials", "cubes", "actuator", "piezo",  "sensor",
                                               "dump",     "table",     "set",   "damping",  "include"};

// The name of a section, or one misspelt.
bool BeginsAsModel(const std::string& head) {
    return !NearestWord(ModelWords(head).Next(), openingWords).empty();
}

// The text itself of a file that begins with a byte order mark, UTF-16 with it roughly made ASCII.
std::string WithoutByteOrderMark(std::string head) {
    if (head.starts_with("\xEF\xBB\xBF")) head.erase(0, 3);
    if (!head.starts_with("\xFF\xFE") && !head.starts_with("\xFE\xFF")) return head;
    head.erase(0, 2);
    std::erase(head, '\0');
    return head;
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

// The names of the four columns before the values, whatever stands between them.
bool BeginsWithIndexColumns(std::string_view line) {
    std::string names;
    for (const std::string& name : Split(line, "\t ,;")) {
        if (name.size() == 1) names += name;
    }
    return names.starts_with("xyzf") || names.starts_with("XYZF");
}

// Names between tabs and below them as many numbers. Where the first line may begin a model only that will do; where
// it may not, several names do alone.
bool BeginsAsTextResults(const std::string& head) {
    if (BeginsWithIndexColumns(FirstLine(head))) return true;
    const std::size_t lineEnd = head.find('\n');
    if (lineEnd == std::string::npos) return false;
    const Fields names = Split(FirstLine(head), "\t");
    if (std::any_of(names.begin(), names.end(), IsNumber)) return false;
    const Fields row = Split(FirstLine(std::string_view(head).substr(lineEnd + 1)), "\t ");
    const bool rowFits = row.size() == names.size() && std::all_of(row.begin(), row.end(), IsNumber);
    const bool comment = std::string_view("$%;").find(head.front()) != std::string_view::npos;
    if (comment || BeginsAsModel(head)) return names.size() > 1 && rowFits;
    return names.size() > 1 || (rowFits && names.front().find(' ') == std::string::npos);
}

}  // namespace

FileKind DetectFileKind(const std::string& path) {
    const std::string head = WithoutByteOrderMark(ReadHead(path, headSize));
    if (head.starts_with("MATLAB ") || head.starts_with("\x89HDF")) return FileKind::results;
    return BeginsAsTextResults(head) ? FileKind::results : FileKind::model;
}
