#include <algorithm>
#include <atomic>

#include <windows.h>

#include "Faults/Faults.h"

// What Faults.cpp does to the calls of POSIX systems, done to those of Windows. These are called through pointers,
// which the linker has the library take from here: -Wl,--wrap=__imp_ReadFile and so on.

using namespace orvalo::faults;

namespace {

BOOL Refuse(DWORD failure) {
    ::SetLastError(failure);
    return FALSE;
}

}  // namespace

extern "C" {

extern decltype(&::CreateFileW) __real___imp_CreateFileW;
extern decltype(&::CloseHandle) __real___imp_CloseHandle;
extern decltype(&::ReadFile) __real___imp_ReadFile;
extern decltype(&::WriteFile) __real___imp_WriteFile;
extern decltype(&::FlushFileBuffers) __real___imp_FlushFileBuffers;
extern decltype(&::MoveFileExW) __real___imp_MoveFileExW;
extern decltype(&::GetFileInformationByHandle) __real___imp_GetFileInformationByHandle;
extern decltype(&::GetFileAttributesW) __real___imp_GetFileAttributesW;
extern decltype(&::VirtualAlloc) __real___imp_VirtualAlloc;
extern decltype(&::VirtualFree) __real___imp_VirtualFree;

static HANDLE WINAPI Open(LPCWSTR path, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security, DWORD how,
                          DWORD flags, HANDLE like) {
    if (Fails(opening, EACCES)) {
        Refuse(ERROR_ACCESS_DENIED);
        return INVALID_HANDLE_VALUE;
    }
    const HANDLE file = __real___imp_CreateFileW(path, access, share, security, how, flags, like);
    if (file != INVALID_HANDLE_VALUE) ++held.files;
    return file;
}

static BOOL WINAPI Close(HANDLE handle) {
    // Threads and events have handles, too.
    if (::GetFileType(handle) != FILE_TYPE_DISK) return __real___imp_CloseHandle(handle);
    --held.files;
    const BOOL closed = __real___imp_CloseHandle(handle);
    return Fails(saving, EIO) ? Refuse(ERROR_WRITE_FAULT) : closed;
}

static BOOL WINAPI Read(HANDLE file, LPVOID buffer, DWORD size, LPDWORD got, LPOVERLAPPED from) {
    const std::size_t place = from->Offset;
    if (raising != nullptr && raising->Fails()) raised = true;
    if (Fails(reading, EIO) || place >= transfer.unreadable) return Refuse(ERROR_CRC);
    const std::size_t left = std::min(transfer.end, transfer.unreadable) - std::min(transfer.end, place);
    const std::size_t most = transfer.seed == 0 ? transfer.most : 1 + (transfer.seed + place) % transfer.most;
    return __real___imp_ReadFile(file, buffer, static_cast<DWORD>(std::min({std::size_t{size}, left, most})), got,
                                 from);
}

static BOOL WINAPI Write(HANDLE file, LPCVOID data, DWORD size, LPDWORD put, LPOVERLAPPED at) {
    if (raising != nullptr && raising->Fails()) raised = true;
    if (Fails(saving, ENOSPC) || (room == 0 && size > 0)) return Refuse(ERROR_DISK_FULL);
    size = static_cast<DWORD>(std::min({std::size_t{size}, transfer.most, room}));
    if (room != static_cast<std::size_t>(-1)) room -= size;
    return __real___imp_WriteFile(file, data, size, put, at);
}

static BOOL WINAPI Flush(HANDLE file) {
    return Fails(saving, EIO) ? Refuse(ERROR_WRITE_FAULT) : __real___imp_FlushFileBuffers(file);
}

static BOOL WINAPI Move(LPCWSTR from, LPCWSTR to, DWORD flags) {
    return Fails(saving, EIO) ? Refuse(ERROR_WRITE_FAULT) : __real___imp_MoveFileExW(from, to, flags);
}

static BOOL WINAPI Ask(HANDLE file, LPBY_HANDLE_FILE_INFORMATION status) {
    return Fails(asking, EIO) ? Refuse(ERROR_CRC) : __real___imp_GetFileInformationByHandle(file, status);
}

static DWORD WINAPI AskByName(LPCWSTR path) {
    if (!Fails(asking, EACCES)) return __real___imp_GetFileAttributesW(path);
    Refuse(ERROR_ACCESS_DENIED);
    return INVALID_FILE_ATTRIBUTES;
}

static LPVOID WINAPI Reserve(LPVOID start, SIZE_T size, DWORD kind, DWORD protection) {
    const bool reserves = (kind & MEM_RESERVE) != 0;
    if (reserves && Fails(memory, ENOMEM)) {
        Refuse(ERROR_NOT_ENOUGH_MEMORY);
        return nullptr;
    }
    void* const given = __real___imp_VirtualAlloc(start, size, kind, protection);
    if (reserves && given != nullptr) ++std::atomic_ref(held.mappings);
    return given;
}

static BOOL WINAPI Release(LPVOID start, SIZE_T size, DWORD kind) {
    if ((kind & MEM_RELEASE) == 0) return __real___imp_VirtualFree(start, size, kind);
    if (Fails(unmapping, ENOMEM)) return Refuse(ERROR_NOT_ENOUGH_MEMORY);
    --std::atomic_ref(held.mappings);
    return __real___imp_VirtualFree(start, size, kind);
}

decltype(&::CreateFileW) __wrap___imp_CreateFileW = Open;
decltype(&::CloseHandle) __wrap___imp_CloseHandle = Close;
decltype(&::ReadFile) __wrap___imp_ReadFile = Read;
decltype(&::WriteFile) __wrap___imp_WriteFile = Write;
decltype(&::FlushFileBuffers) __wrap___imp_FlushFileBuffers = Flush;
decltype(&::MoveFileExW) __wrap___imp_MoveFileExW = Move;
decltype(&::GetFileInformationByHandle) __wrap___imp_GetFileInformationByHandle = Ask;
decltype(&::GetFileAttributesW) __wrap___imp_GetFileAttributesW = AskByName;
decltype(&::VirtualAlloc) __wrap___imp_VirtualAlloc = Reserve;
decltype(&::VirtualFree) __wrap___imp_VirtualFree = Release;

}  // extern "C"
