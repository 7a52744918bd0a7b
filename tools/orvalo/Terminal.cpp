#include "Terminal.h"

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#if defined(_WIN32)
#include <io.h>

bool IsTerminal(std::FILE* stream) {
    return _isatty(_fileno(stream)) != 0;
}

std::size_t TerminalWidth(std::FILE*) {
    return 80;
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
