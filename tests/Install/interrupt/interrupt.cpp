#include <cstdio>
#include <string>
#include <vector>

#include <windows.h>

// Has the tool copy what comes from a pipe, and types Ctrl-C on the console that both have. The arguments are the tool
// and a directory for temporary files. Prints the console's code page before; meanwhile, with how many temporary
// directories there are; and after, with the tool's status before and these directories after it.

namespace {

int Fail(const char* what) {
    std::printf("%s: %lu\n", what, GetLastError());
    return 1;
}

int CountDirectories(const std::string& temporary) {
    WIN32_FIND_DATAA found;
    const HANDLE search = FindFirstFileA((temporary + "\\orvalo-*").c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) return 0;
    int count = 1;
    while (FindNextFileA(search, &found) != 0) ++count;
    FindClose(search);
    return count;
}

BOOL WINAPI GoOn(DWORD) {
    return TRUE;
}

}  // namespace

int main(int, char** argv) {
    SetEnvironmentVariableA("TMP", argv[2]);
    SetConsoleCtrlHandler(GoOn, TRUE);
    SetConsoleOutputCP(437);
    std::printf("%u ", GetConsoleOutputCP());

    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    STARTUPINFOA start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdOutput = GetStdHandle(STD_ERROR_HANDLE);
    start.hStdError = start.hStdOutput;
    HANDLE toTool = nullptr;
    if (CreatePipe(&start.hStdInput, &toTool, &inherited, 0) == 0) return Fail("pipe");
    SetHandleInformation(toTool, HANDLE_FLAG_INHERIT, 0);
    std::string command = std::string(argv[1]) + " info -";
    PROCESS_INFORMATION tool{};
    if (CreateProcessA(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start, &tool) == 0)
        return Fail("start");
    CloseHandle(start.hStdInput);

    // More than a pipe holds, so that some was read.
    const std::vector<char> text(1 << 20, '\n');
    DWORD written = 0;
    if (WriteFile(toTool, text.data(), static_cast<DWORD>(text.size()), &written, nullptr) == 0) return Fail("write");
    std::printf("%u %d ", GetConsoleOutputCP(), CountDirectories(argv[2]));
    if (GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0) == 0) return Fail("Ctrl-C");
    // The tool takes notice in a thread of its own, and then a read of a pipe goes on waiting.
    Sleep(500);
    CloseHandle(toTool);
    WaitForSingleObject(tool.hProcess, 60000);
    DWORD status = 0;
    GetExitCodeProcess(tool.hProcess, &status);
    std::printf("%lx %u %d\n", status, GetConsoleOutputCP(), CountDirectories(argv[2]));
    return 0;
}
