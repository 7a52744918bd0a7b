#include "IncludedFiles.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include "ModelWords.h"
#include "PathText.h"

namespace {

std::string ToLower(std::string_view text) {
    std::string lower(text);
    for (char& c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return lower;
}

bool EndsWithInclude(std::string_view text) {
    text = text.substr(0, text.find_last_not_of(" \t\r\n,") + 1);
    constexpr std::string_view word = "include";
    return text.size() >= word.size() && ToLower(text.substr(text.size() - word.size())) == word;
}

/// A name as the reader looks for it: without the bytes that it drops from names. Empty where it names no file.
std::string FileNamed(std::string_view quoted) {
    std::string name = ToLower(quoted);
    std::erase_if(name, [](char c) { return std::string_view(" \t,;%$").find(c) != std::string_view::npos; });
    return name.find('/') == std::string::npos && name != "." && name != ".." ? name : std::string();
}

std::vector<std::string> IncludedNames(const std::string& path) {
    std::vector<std::string> names;
    if (!MayBeReread(path)) return names;
    std::ifstream file(PathOf(path), std::ios::binary);
    std::string before;
    for (std::string line; std::getline(file, line);) {
        std::size_t end = 0;
        for (std::size_t open = line.find('"'); open != std::string::npos; open = line.find('"', end + 1)) {
            end = std::min(line.find('"', open + 1), line.size());
            const std::string_view lead = std::string_view(line).substr(0, open);
            const bool first = lead.find_first_not_of(" \t\r,") == std::string_view::npos;
            if (!EndsWithInclude(first ? std::string_view(before) : lead)) continue;
            const std::string name = FileNamed(std::string_view(line).substr(open + 1, end - open - 1));
            if (!name.empty()) names.push_back(name);
            if (end == line.size()) break;
        }
        if (line.find_first_not_of(" \t\r,") != std::string::npos) before.swap(line);
    }
    return names;
}

}  // namespace

std::vector<std::string> WithIncludedFiles(const std::string& path, const std::string& directory) {
    std::vector<std::string> paths = {path};
    for (std::size_t i = 0; i < paths.size(); ++i) {
        for (const std::string& name : IncludedNames(paths[i])) {
            const std::string included = TextOf(PathOf(directory) / PathOf(name));
            if (std::find(paths.begin(), paths.end(), included) == paths.end()) paths.push_back(included);
        }
    }
    return paths;
}

std::vector<std::string> WithIncludedFiles(const std::string& path) {
    return WithIncludedFiles(path, TextOf(PathOf(path).parent_path()));
}
