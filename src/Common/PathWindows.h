#pragma once

#include <array>
#include <string>
#include <string_view>

#include <windows.h>

/// Paths as the system takes them.
namespace orvalo::platform {

/// Room for any path that the system takes. On the stack, so that short memory is no reason for a file not to be found.
using WidePath = std::array<wchar_t, 32768>;

/// Makes a path of the system's of UTF-8, or of what is no UTF-8 but a text in the active code page. False where there
/// is no such path.
bool Widen(std::string_view path, WidePath& wide) noexcept;

/// What went wrong, for the common failures in the words that other systems have. Throws std::bad_alloc.
std::string TextOf(DWORD failure);

/// Calls `ask` with a path as the system takes it. Where there is no such path, returns `none`.
template <class Answer, class Ask>
Answer WithPath(const std::string& path, Answer none, const Ask& ask) noexcept {
    WidePath wide;
    return Widen(path, wide) ? ask(wide.data()) : none;
}

}  // namespace orvalo::platform
