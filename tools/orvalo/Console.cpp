#include "Console.h"

#include <algorithm>
#include <string>
#include <vector>

#if defined(_WIN32)
#include <cstdio>
#include <cstdlib>
#include <memory>

#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include "PathText.h"

namespace {

// 0 where there is no console.
UINT codePageBefore = 0;

void RestoreCodePage() {
    if (codePageBefore != 0) ::SetConsoleOutputCP(codePageBefore);
}

/// Ctrl-C ends the program, but the console goes on.
BOOL WINAPI RestoreAtEnd(DWORD) {
    RestoreCodePage();
    return FALSE;
}

}  // namespace

void PrepareConsole() {
    for (std::FILE* stream : {stdin, stdout, stderr}) ::_setmode(::_fileno(stream), _O_BINARY);
    // Where it is no console, it would be kept back otherwise.
    std::setvbuf(stderr, nullptr, _IONBF, 0);
    codePageBefore = ::GetConsoleOutputCP();
    if (codePageBefore == 0) return;
    ::SetConsoleOutputCP(CP_UTF8);
    ::SetConsoleCtrlHandler(RestoreAtEnd, TRUE);
    std::atexit(RestoreCodePage);
}

std::vector<std::string> CommandLine(int, char**) {
    int count = 0;
    const std::unique_ptr<LPWSTR, decltype(&::LocalFree)> words(::CommandLineToArgvW(::GetCommandLineW(), &count),
                                                                &::LocalFree);
    std::vector<std::string> arguments;
    for (int i = 1; words && i < count; ++i) arguments.push_back(TextOf(words.get()[i]));
    return arguments;
}
#else
void PrepareConsole() {}

std::vector<std::string> CommandLine(int argc, char** argv) {
    return {argv + std::min(argc, 1), argv + argc};
}
#endif
