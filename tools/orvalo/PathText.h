#pragma once

#include <filesystem>
#include <string>

/// The path that a text names, as the library takes it: its bytes where paths are bytes, on Windows UTF-8, or the
/// active code page where the text is no UTF-8. The constructor of paths would take it otherwise there.
std::filesystem::path PathOf(const std::string& text);

/// What names a path: its bytes, on Windows UTF-8.
std::string TextOf(const std::filesystem::path& path);
