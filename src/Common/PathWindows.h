#pragma once

#include <new>
#include <string>

#include <windows.h>

/// Paths as the system takes them.
namespace orvalo::platform {

/// A text of the system's, from UTF-8, or what is no UTF-8 from the active code page. Throws std::bad_alloc.
std::wstring Wide(const std::string& text);

/// What went wrong, for the common failures in the words that other systems have. Throws std::bad_alloc.
std::string TextOf(DWORD failure);

/// Calls `ask` with a path as the system takes it. Where there is no such path, or no memory for it, returns `none`.
template <class Answer, class Ask>
Answer WithPath(const std::string& path, Answer none, const Ask& ask) noexcept {
    // A path with a NUL would name what stands before it.
    ::SetLastError(ERROR_INVALID_NAME);
    if (path.find('\0') != std::string::npos) return none;
    try {
        return ask(Wide(path).c_str());
    } catch (const std::bad_alloc&) {
        ::SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return none;
    }
}

}  // namespace orvalo::platform
