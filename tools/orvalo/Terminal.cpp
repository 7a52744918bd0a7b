#include "Terminal.h"

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#if defined(_WIN32)
#include <io.h>
#include <windows.h>

namespace {

HANDLE HandleOf(std::FILE* stream) {
    return reinterpret_cast<HANDLE>(::_get_osfhandle(::_fileno(stream)));
}

/// Old consoles show control sequences as they are.
bool KnowsControlSequences(std::FILE* stream) {
    DWORD mode = 0;
    if (::GetConsoleMode(HandleOf(stream), &mode) == 0) return false;
    return ::SetConsoleMode(HandleOf(stream), mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

}  // namespace

bool IsTerminal(std::FILE* stream) {
    static const bool error = KnowsControlSequences(stderr);
    static const bool output = KnowsControlSequences(stdout);
    return stream == stderr ? error : output;
}

std::size_t TerminalWidth(std::FILE* stream) {
    CONSOLE_SCREEN_BUFFER_INFO screen;
    if (::GetConsoleScreenBufferInfo(HandleOf(stream), &screen) == 0) return 80;
    return static_cast<std::size_t>(screen.srWindow.Right - screen.srWindow.Left + 1);
}
#else
#include <sys/ioctl.h>
#include <unistd.h>

bool IsTerminal(std::FILE* stream) {
    return isatty(fileno(stream)) != 0;
}

std::size_t TerminalWidth(std::FILE* stream) {
    winsize size{};
    return ioctl(fileno(stream), TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : 80;
}
#endif

bool WantsColour(std::FILE* stream) {
    const char* refused = std::getenv("NO_COLOR");
    if (refused != nullptr && *refused != '\0') return false;
    const char* terminal = std::getenv("TERM");
    if (terminal != nullptr && std::string_view(terminal) == "dumb") return false;
    return IsTerminal(stream);
}
