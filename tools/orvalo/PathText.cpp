#include "PathText.h"

#include <filesystem>
#include <string>

#if defined(_WIN32)
#include <algorithm>
#include <cstddef>

#include <windows.h>

namespace {

/// Empty where the text does not belong to the code page.
std::wstring Widened(const std::string& text, UINT codePage, DWORD flags) {
    const int size = static_cast<int>(text.size());
    const int length = ::MultiByteToWideChar(codePage, flags, text.data(), size, nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(std::max(length, 0)), L'\0');
    ::MultiByteToWideChar(codePage, flags, text.data(), size, wide.data(), length);
    return wide;
}

}  // namespace

std::filesystem::path PathOf(const std::string& text) {
    const std::wstring wide = Widened(text, CP_UTF8, MB_ERR_INVALID_CHARS);
    return wide.empty() ? Widened(text, CP_ACP, 0) : wide;
}

std::string TextOf(const std::filesystem::path& path) {
    const std::wstring& wide = path.native();
    const int size = static_cast<int>(wide.size());
    const int length = ::WideCharToMultiByte(CP_UTF8, 0, wide.data(), size, nullptr, 0, nullptr, nullptr);
    std::string text(static_cast<std::size_t>(std::max(length, 0)), '\0');
    ::WideCharToMultiByte(CP_UTF8, 0, wide.data(), size, text.data(), length, nullptr, nullptr);
    return text;
}
#else
std::filesystem::path PathOf(const std::string& text) {
    return text;
}

std::string TextOf(const std::filesystem::path& path) {
    return path.string();
}
#endif
