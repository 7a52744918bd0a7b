#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <new>
#include <system_error>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include "Common/Platform.h"

namespace orvalo::platform {

void* MapPages(std::size_t size, Pages pages) noexcept {
    void* const mapped = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (mapped == MAP_FAILED) return nullptr;
#if defined(MADV_HUGEPAGE)
    // Where the system makes all pages large by itself, small ones are to be asked for.
    ::madvise(mapped, size, pages == Pages::Large ? MADV_HUGEPAGE : MADV_NOHUGEPAGE);
#else
    static_cast<void>(pages);
#endif
    return mapped;
}

bool UnmapPages(void* start, std::size_t size) noexcept {
    return ::munmap(start, size) == 0;
}

void DiscardPages(void* start, std::size_t size) noexcept {
    static const auto pageSize = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
    const std::size_t before = (pageSize - reinterpret_cast<std::uintptr_t>(start) % pageSize) % pageSize;
    if (size < before + pageSize) return;
    // Other advice than this one may leave the content in place until memory is short.
    ::madvise(static_cast<char*>(start) + before, (size - before) / pageSize * pageSize, MADV_DONTNEED);
}

InputFile::~InputFile() {
    Close();
}

bool InputFile::Open(const std::string& path) noexcept {
    Close();
    // A path with a NUL would silently open what stands before it.
    if (path.find('\0') != std::string::npos) return false;
    do {
        descriptor_ = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    } while (descriptor_ < 0 && errno == EINTR);
    return descriptor_ >= 0;
}

void InputFile::Close() noexcept {
    if (descriptor_ >= 0) ::close(descriptor_);
    descriptor_ = -1;
}

std::optional<std::size_t> InputFile::Read(void* buffer, std::size_t size) noexcept {
    // One call transfers at most what the system's signed count holds; larger requests are refused by some systems.
    constexpr std::size_t maxAtOnce = std::size_t{1} << 30;
    auto* const bytes = static_cast<unsigned char*>(buffer);
    std::size_t filled = 0;
    while (filled < size) {
        const ssize_t got = ::read(descriptor_, bytes + filled, std::min(size - filled, maxAtOnce));
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) return std::nullopt;
        if (got == 0) break;
        filled += static_cast<std::size_t>(got);
    }
    return filled;
}

bool InputFile::Seek(std::uint64_t offset) noexcept {
    return ::lseek(descriptor_, static_cast<off_t>(offset), SEEK_SET) >= 0;
}

std::optional<std::uint64_t> InputFile::Size() const noexcept {
    struct stat status {};
    if (::fstat(descriptor_, &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
    return static_cast<std::uint64_t>(status.st_size);
}

Presence LookFor(const std::string& path) noexcept {
    struct stat status {};
    // A path with a NUL would name what stands before it.
    if (path.find('\0') != std::string::npos) return Presence::NotThere;
    if (::stat(path.c_str(), &status) == 0) return Presence::There;
    return errno == ENOENT || errno == ENOTDIR ? Presence::NotThere : Presence::Hidden;
}

bool IsRegularFile(const std::string& path) noexcept {
    struct stat status {};
    return path.find('\0') == std::string::npos && ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

std::string WhyUnreadable(const std::string& path) {
    struct stat status {};
    int problem = ::stat(path.c_str(), &status) != 0 ? errno : 0;
    if (problem == 0 && S_ISDIR(status.st_mode)) problem = EISDIR;
    if (problem == 0 && S_ISREG(status.st_mode)) {
        InputFile file;
        char byte = 0;
        if (!file.Open(path) || !file.Read(&byte, 1)) problem = errno;
    }
    return problem == 0 ? std::string() : std::generic_category().message(problem);
}

std::vector<std::string> FilesIn(const std::string& directory) {
    constexpr std::size_t most = 5000;
    std::vector<std::string> names;
    std::error_code error;
    std::filesystem::directory_iterator entry(directory, error);
    for (; !error && entry != std::filesystem::directory_iterator() && names.size() < most; entry.increment(error)) {
        names.push_back(entry->path().filename().string());
    }
    return names;
}

std::optional<std::string> AbsolutePath(const std::string& path) {
    std::error_code error;
    std::filesystem::path base;
    if (path.empty() || path.front() != '/') {
        base = std::filesystem::current_path(error);
        if (error == std::errc::not_enough_memory) throw std::bad_alloc();
        if (error) return std::nullopt;
    }
    return (base / path).lexically_normal().string();
}

}  // namespace orvalo::platform
