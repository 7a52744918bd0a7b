#include "Check/SourceText.h"

#include <algorithm>

#include "Common/Platform.h"

namespace orvalo {

namespace {

constexpr std::size_t windowSize = 4096;

bool EndsWord(char c) {
    return c == ' ' || c == '\t' || c == ',' || c == '\n' || c == '\r' || c == '\0';
}

}  // namespace

bool SourceText::Load(const std::string& path, std::uint64_t from, std::size_t size) {
    if (path == path_ && from >= offset_ && from + size <= offset_ + bytes_.size()) return true;
    path_.clear();
    platform::InputFile file;
    // Of the kinds of files, only those with a size can be read again.
    if (!platform::IsRegularFile(path) || !file.Open(path) || !file.Size() || !file.Seek(from)) return false;
    bytes_.assign(std::max(size, windowSize), '\0');
    const auto got = file.Read(bytes_.data(), bytes_.size());
    if (!got) return false;
    bytes_.resize(*got);
    path_ = path;
    offset_ = from;
    return true;
}

std::string_view SourceText::Around(const InputPlace& place, std::size_t before, std::size_t after, std::size_t& at) {
    at = static_cast<std::size_t>(std::min<std::uint64_t>(before, place.offset));
    if (place.path.empty() || !Load(place.path, place.offset - at, at + after)) {
        at = 0;
        return {};
    }
    const auto start = static_cast<std::size_t>(place.offset - at - offset_);
    const std::string_view text = std::string_view(bytes_).substr(std::min(start, bytes_.size()), at + after);
    at = std::min(at, text.size());
    return text;
}

std::string_view SourceText::From(const InputPlace& place, std::size_t size) {
    std::size_t at = 0;
    return Around(place, 0, size, at);
}

std::string_view SourceText::TokenAt(const InputPlace& place) {
    const std::string_view text = From(place);
    if (text.empty() || EndsWord(text.front())) return {};
    if (text.front() == '=') return text.substr(0, 1);
    if (text.front() == '"') {
        const std::size_t lineEnd = std::min(text.find_first_of("\r\n"), text.size());
        return text.substr(
            0, std::min(text.find('"', 1) + 1, lineEnd) == 0 ? lineEnd : std::min(text.find('"', 1) + 1, lineEnd));
    }
    std::size_t end = 1;
    while (end < text.size() && !EndsWord(text[end]) && text[end] != '=' && text[end] != '"') ++end;
    return text.substr(0, end);
}

std::string_view SourceText::LineOf(const InputPlace& place, std::size_t& at) {
    constexpr std::size_t reach = 1000;
    std::string_view text = Around(place, reach, reach, at);
    const std::size_t end = std::min(text.find_first_of("\r\n", at), text.size());
    text = text.substr(0, end);
    const std::size_t before = text.substr(0, at).find_last_of('\n');
    if (before != std::string_view::npos) {
        text.remove_prefix(before + 1);
        at -= before + 1;
    }
    return text;
}

}  // namespace orvalo
