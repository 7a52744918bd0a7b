#include <algorithm>

#include <windows.h>

#include "Common/PagesWindows.h"
#include "Common/PathWindows.h"
#include "Common/Platform.h"

namespace orvalo::platform {

namespace {

HANDLE HandleOf(Descriptor descriptor) noexcept {
    return reinterpret_cast<HANDLE>(descriptor);  // NOLINT(performance-no-int-to-ptr)
}

bool Move(const std::string& from, const std::string& to, DWORD flags) noexcept {
    return WithPath(from, false, [&](const wchar_t* wideFrom) {
        return WithPath(to, false, [&](const wchar_t* wideTo) { return ::MoveFileExW(wideFrom, wideTo, flags) != 0; });
    });
}

}  // namespace

NewFile::~NewFile() {
    Close();
}

bool NewFile::Create(const std::string& path) noexcept {
    const HANDLE file = WithPath(path, INVALID_HANDLE_VALUE, [](const wchar_t* wide) {
        return ::CreateFileW(wide, GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr, CREATE_NEW,
                             FILE_ATTRIBUTE_NORMAL, nullptr);
    });
    if (file == INVALID_HANDLE_VALUE) return false;
    descriptor_ = reinterpret_cast<Descriptor>(file);
    return true;
}

/// Here a file takes its permissions from its directory.
bool NewFile::TakePermissions(const std::string&) noexcept {
    return true;
}

bool NewFile::Write(const void* data, std::size_t size) noexcept {
    constexpr std::size_t maxAtOnce = std::size_t{1} << 30U;
    if (!CommitIfMapped(const_cast<void*>(data), size)) return false;
    const auto* bytes = static_cast<const unsigned char*>(data);
    while (size > 0) {
        DWORD put = 0;
        if (::WriteFile(HandleOf(descriptor_), bytes, static_cast<DWORD>(std::min(size, maxAtOnce)), &put, nullptr) ==
            0) {
            return false;
        }
        bytes += put;
        size -= put;
    }
    return true;
}

bool NewFile::Finish() noexcept {
    if (::FlushFileBuffers(HandleOf(descriptor_)) == 0) return false;
    const bool closed = ::CloseHandle(HandleOf(descriptor_)) != 0;
    descriptor_ = noDescriptor;
    return closed;
}

void NewFile::Close() noexcept {
    if (descriptor_ != noDescriptor) ::CloseHandle(HandleOf(descriptor_));
    descriptor_ = noDescriptor;
}

Target LookAtTarget(const std::string& path) noexcept {
    const DWORD attributes =
        WithPath(path, INVALID_FILE_ATTRIBUTES, [](const wchar_t* wide) { return ::GetFileAttributesW(wide); });
    if (attributes == INVALID_FILE_ATTRIBUTES) return Target::Nothing;
    if (!IsRegularFile(path)) return Target::OtherThing;
    return (attributes & FILE_ATTRIBUTE_READONLY) != 0 ? Target::ReadOnlyFile : Target::File;
}

bool MoveToFreeName(const std::string& from, const std::string& to) noexcept {
    return Move(from, to, 0);
}

bool MoveOver(const std::string& from, const std::string& to) noexcept {
    return Move(from, to, MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH);
}

bool RemoveFile(const std::string& path) noexcept {
    return WithPath(path, false, [](const wchar_t* wide) { return ::DeleteFileW(wide) != 0; });
}

unsigned long ProcessNumber() noexcept {
    return ::GetCurrentProcessId();
}

int LastFailure() noexcept {
    return static_cast<int>(::GetLastError());
}

bool NameIsTaken(int failure) noexcept {
    return failure == ERROR_FILE_EXISTS || failure == ERROR_ALREADY_EXISTS;
}

std::string FailureText(int failure) {
    return TextOf(static_cast<DWORD>(failure));
}

}  // namespace orvalo::platform
