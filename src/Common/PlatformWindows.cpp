#include <algorithm>
#include <bit>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include <windows.h>

#include "Common/PagesWindows.h"
#include "Common/PathWindows.h"
#include "Common/Platform.h"

namespace orvalo::platform {

namespace {

std::string Narrow(const wchar_t* text, std::size_t size) {
    const int length = static_cast<int>(size);
    const int bytes = ::WideCharToMultiByte(CP_UTF8, 0, text, length, nullptr, 0, nullptr, nullptr);
    std::string narrow(static_cast<std::size_t>(std::max(bytes, 0)), '\0');
    ::WideCharToMultiByte(CP_UTF8, 0, text, length, narrow.data(), bytes, nullptr, nullptr);
    return narrow;
}

/// With the flag for backups directories can be opened too, so that they end in the error of reading, as elsewhere.
HANDLE OpenExisting(const wchar_t* path, DWORD access, DWORD flags) noexcept {
    return ::CreateFileW(path, access, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                         FILE_FLAG_BACKUP_SEMANTICS | flags, nullptr);
}

HANDLE HandleOf(Descriptor descriptor) noexcept {
    return reinterpret_cast<HANDLE>(descriptor);  // NOLINT(performance-no-int-to-ptr)
}

bool IsRegular(HANDLE file) noexcept {
    BY_HANDLE_FILE_INFORMATION status;
    return ::GetFileType(file) == FILE_TYPE_DISK && ::GetFileInformationByHandle(file, &status) != 0 &&
           (status.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

DWORD AttributesOf(const std::string& path) noexcept {
    return WithPath(path, INVALID_FILE_ATTRIBUTES, [](const wchar_t* wide) { return ::GetFileAttributesW(wide); });
}

struct CloseSearch {
    void operator()(void* search) const noexcept {
        if (search != INVALID_HANDLE_VALUE) ::FindClose(search);
    }
};

}  // namespace

bool Widen(std::string_view path, WidePath& wide) noexcept {
    const int room = static_cast<int>(wide.size()) - 1;
    const bool tooLong = path.size() > 4 * wide.size();
    ::SetLastError(tooLong ? ERROR_FILENAME_EXCED_RANGE : ERROR_INVALID_NAME);
    // A path with a NUL would name what stands before it.
    if (tooLong || path.empty() || path.find('\0') != std::string_view::npos) return false;
    const int size = static_cast<int>(path.size());
    int length = ::MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, path.data(), size, wide.data(), room);
    if (length <= 0 && ::GetLastError() == ERROR_NO_UNICODE_TRANSLATION)
        length = ::MultiByteToWideChar(CP_ACP, 0, path.data(), size, wide.data(), room);
    if (length <= 0) ::SetLastError(ERROR_FILENAME_EXCED_RANGE);
    wide[static_cast<std::size_t>(std::max(length, 0))] = L'\0';
    return length > 0;
}

std::string TextOf(DWORD failure) {
    switch (failure) {
        case ERROR_FILE_NOT_FOUND:
        case ERROR_PATH_NOT_FOUND:
        case ERROR_INVALID_NAME:
        case ERROR_BAD_NETPATH:
            return "No such file or directory";
        case ERROR_ACCESS_DENIED:
            return "Permission denied";
        case ERROR_INVALID_FUNCTION:
            return "Is a directory";
        case ERROR_FILENAME_EXCED_RANGE:
            return "File name too long";
        case ERROR_SHARING_VIOLATION:
        case ERROR_LOCK_VIOLATION:
            return "Another program keeps it to itself";
        default:
            return std::system_category().message(static_cast<int>(failure));
    }
}

InputFile::~InputFile() {
    Close();
}

bool InputFile::Open(const std::string& path) noexcept {
    Close();
    const HANDLE file = WithPath(path, INVALID_HANDLE_VALUE, [](const wchar_t* wide) {
        return OpenExisting(wide, GENERIC_READ, FILE_FLAG_SEQUENTIAL_SCAN);
    });
    if (file == INVALID_HANDLE_VALUE) return false;
    // Names such as NUL and con.txt stand for devices.
    if (::GetFileType(file) == FILE_TYPE_CHAR) {
        ::CloseHandle(file);
        ::SetLastError(ERROR_INVALID_NAME);
        return false;
    }
    descriptor_ = reinterpret_cast<Descriptor>(file);
    place_ = 0;
    return true;
}

void InputFile::Close() noexcept {
    if (descriptor_ != noDescriptor) ::CloseHandle(HandleOf(descriptor_));
    descriptor_ = noDescriptor;
}

namespace {

/// One call of the system: reads from a place of a file on, or what comes next from a pipe. Nothing at the end.
std::optional<std::size_t> ReadOnce(HANDLE file, std::uint64_t offset, void* buffer, DWORD size) noexcept {
    OVERLAPPED place{};
    place.Offset = static_cast<DWORD>(offset);
    place.OffsetHigh = static_cast<DWORD>(offset >> 32U);
    DWORD got = 0;
    if (::ReadFile(file, buffer, size, &got, &place) != 0) return got;
    const DWORD failure = ::GetLastError();
    if (failure == ERROR_HANDLE_EOF || failure == ERROR_BROKEN_PIPE) return 0;
    return std::nullopt;
}

}  // namespace

std::optional<std::size_t> InputFile::ReadAt(std::uint64_t offset, void* buffer, std::size_t size) const noexcept {
    constexpr std::size_t maxAtOnce = std::size_t{1} << 30U;
    if (!CommitIfMapped(buffer, size)) return std::nullopt;
    auto* const bytes = static_cast<unsigned char*>(buffer);
    std::size_t filled = 0;
    while (filled < size) {
        const auto wanted = static_cast<DWORD>(std::min(size - filled, maxAtOnce));
        const auto got = ReadOnce(HandleOf(descriptor_), offset + filled, bytes + filled, wanted);
        if (!got) return std::nullopt;
        if (*got == 0) break;
        filled += *got;
    }
    return filled;
}

std::optional<std::size_t> InputFile::Read(void* buffer, std::size_t size) noexcept {
    const auto got = ReadAt(place_, buffer, size);
    place_ += got.value_or(0);
    return got;
}

bool InputFile::Seek(std::uint64_t offset) noexcept {
    if (!Place()) return false;
    place_ = offset;
    return true;
}

std::optional<std::uint64_t> InputFile::Place() const noexcept {
    return ::GetFileType(HandleOf(descriptor_)) == FILE_TYPE_DISK ? std::optional(place_) : std::nullopt;
}

std::optional<std::uint64_t> InputFile::Size() const noexcept {
    LARGE_INTEGER size;
    if (!IsRegular(HandleOf(descriptor_)) || ::GetFileSizeEx(HandleOf(descriptor_), &size) == 0) return std::nullopt;
    return static_cast<std::uint64_t>(size.QuadPart);
}

unsigned int ProcessorCount() noexcept {
    DWORD_PTR usable = 0;
    DWORD_PTR all = 0;
    // None where the process has threads in several groups of processors.
    if (::GetProcessAffinityMask(::GetCurrentProcess(), &usable, &all) != 0 && usable != 0) {
        return static_cast<unsigned int>(std::popcount(usable));
    }
    return std::max<unsigned int>(::GetActiveProcessorCount(ALL_PROCESSOR_GROUPS), 1);
}

Presence LookFor(const std::string& path) noexcept {
    if (AttributesOf(path) != INVALID_FILE_ATTRIBUTES) return Presence::There;
    switch (::GetLastError()) {
        case ERROR_FILE_NOT_FOUND:
        case ERROR_PATH_NOT_FOUND:
        case ERROR_INVALID_DRIVE:
        case ERROR_BAD_NETPATH:
        case ERROR_BAD_NET_NAME:
        case ERROR_INVALID_NAME:
        case ERROR_BAD_PATHNAME:
        case ERROR_DIRECTORY:
            return Presence::NotThere;
        default:
            return Presence::Hidden;
    }
}

bool IsRegularFile(const std::string& path) noexcept {
    const HANDLE file = WithPath(path, INVALID_HANDLE_VALUE,
                                 [](const wchar_t* wide) { return OpenExisting(wide, FILE_READ_ATTRIBUTES, 0); });
    if (file == INVALID_HANDLE_VALUE) return false;
    const bool regular = IsRegular(file);
    ::CloseHandle(file);
    return regular;
}

std::string WhyUnreadable(const std::string& path) {
    DWORD problem = AttributesOf(path) == INVALID_FILE_ATTRIBUTES ? ::GetLastError() : ERROR_SUCCESS;
    if (problem == ERROR_SUCCESS) {
        InputFile file;
        char byte = 0;
        if (!file.Open(path) || !file.Read(&byte, 1)) problem = ::GetLastError();
    }
    return problem == ERROR_SUCCESS ? std::string() : TextOf(problem);
}

std::vector<std::string> FilesIn(const std::string& directory) {
    constexpr std::size_t most = 5000;
    std::vector<std::string> names;
    WIN32_FIND_DATAW found;
    const std::unique_ptr<void, CloseSearch> search(
        WithPath((directory.empty() ? "." : directory) + "\\*", INVALID_HANDLE_VALUE,
                 [&](const wchar_t* pattern) { return ::FindFirstFileW(pattern, &found); }));
    if (search.get() == INVALID_HANDLE_VALUE) return names;
    do {
        const std::wstring_view name(found.cFileName);
        if (name != L"." && name != L"..") names.push_back(Narrow(name.data(), name.size()));
    } while (names.size() < most && ::FindNextFileW(search.get(), &found) != 0);
    return names;
}

std::optional<std::string> AbsolutePath(const std::string& path) {
    if (const std::size_t nul = path.find('\0'); nul != std::string::npos) {
        const auto before = AbsolutePath(path.substr(0, nul));
        return before ? std::optional(*before + path.substr(nul)) : std::nullopt;
    }
    WidePath absolute;
    const DWORD length = WithPath(path.empty() ? ".\\" : path, DWORD{0}, [&](const wchar_t* wide) {
        return ::GetFullPathNameW(wide, static_cast<DWORD>(absolute.size()), absolute.data(), nullptr);
    });
    if (length == 0 || length >= absolute.size()) return std::nullopt;
    return Narrow(absolute.data(), length);
}

}  // namespace orvalo::platform
