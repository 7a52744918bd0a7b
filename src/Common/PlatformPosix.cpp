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

namespace {

/// One call transfers at most what the system's signed count holds; larger requests are refused by some systems.
constexpr std::size_t maxAtOnce = std::size_t{1} << 30U;

std::size_t PageSize() noexcept {
    static const auto size = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
    return size;
}

/// How far it is from the start of its page.
std::size_t PlaceInPage(const void* place) noexcept {
    return reinterpret_cast<std::uintptr_t>(place) % PageSize();
}

}  // namespace

void* MapPages(std::size_t size, Pages pages) noexcept {
    void* const mapped = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (mapped == MAP_FAILED) return nullptr;
    // Where the system makes all pages large by itself, small ones are to be asked for.
    AdvisePages(mapped, size, pages);
    return mapped;
}

void AdvisePages(void* start, std::size_t size, Pages pages) noexcept {
#if defined(MADV_HUGEPAGE)
    const std::size_t before = (PageSize() - PlaceInPage(start)) % PageSize();
    if (size <= before) return;
    ::madvise(static_cast<char*>(start) + before, size - before,
              pages == Pages::Large ? MADV_HUGEPAGE : MADV_NOHUGEPAGE);
#else
    static_cast<void>(start);
    static_cast<void>(size);
    static_cast<void>(pages);
#endif
}

void CommitPages(void* start, std::size_t size) noexcept {
    auto* const bytes = static_cast<unsigned char*>(start);
#if defined(__linux__)
    // Since Linux 5.14, and not in headers that are older. All pages at once cost less than one by one.
    constexpr int populateWrite = 23;
    const std::size_t before = PlaceInPage(start);
    if (::madvise(bytes - before, before + size, populateWrite) == 0 || errno != EINVAL) return;
#endif
    // Writes that change nothing, of a value that no compiler knows: it might make reads of them.
    const volatile unsigned char nothing = 0;
    for (std::size_t at = 0; at < size; at += PageSize() - PlaceInPage(bytes + at)) {
        __atomic_fetch_or(bytes + at, nothing, __ATOMIC_RELAXED);
    }
}

bool UnmapPages(void* start, std::size_t size) noexcept {
    return ::munmap(start, size) == 0;
}

void DiscardPages(void* start, std::size_t size) noexcept {
    const std::size_t before = (PageSize() - PlaceInPage(start)) % PageSize();
    if (size < before + PageSize()) return;
    // Other advice than this one may leave the content in place until memory is short.
    ::madvise(static_cast<char*>(start) + before, (size - before) / PageSize() * PageSize(), MADV_DONTNEED);
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

namespace {

/// Calls `transfer(place, size)`, which reads as ::read does, until `size` bytes were read or the file ends.
template <class Transfer>
std::optional<std::size_t> ReadWhole(void* buffer, std::size_t size, const Transfer& transfer) noexcept {
    auto* const bytes = static_cast<unsigned char*>(buffer);
    std::size_t filled = 0;
    while (filled < size) {
        const ssize_t got = transfer(bytes + filled, std::min(size - filled, maxAtOnce));
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) return std::nullopt;
        if (got == 0) break;
        filled += static_cast<std::size_t>(got);
    }
    return filled;
}

}  // namespace

std::optional<std::size_t> InputFile::Read(void* buffer, std::size_t size) noexcept {
    return ReadWhole(buffer, size,
                     [this](unsigned char* at, std::size_t most) { return ::read(descriptor_, at, most); });
}

std::optional<std::size_t> InputFile::ReadAt(std::uint64_t offset, void* buffer, std::size_t size) const noexcept {
    auto place = static_cast<off_t>(offset);
    return ReadWhole(buffer, size, [&](unsigned char* at, std::size_t most) {
        const ssize_t got = ::pread(descriptor_, at, most, place);
        place += std::max<ssize_t>(got, 0);
        return got;
    });
}

bool InputFile::Seek(std::uint64_t offset) noexcept {
    return ::lseek(descriptor_, static_cast<off_t>(offset), SEEK_SET) >= 0;
}

std::optional<std::uint64_t> InputFile::Place() const noexcept {
    const off_t place = ::lseek(descriptor_, 0, SEEK_CUR);
    return place < 0 ? std::nullopt : std::optional(static_cast<std::uint64_t>(place));
}

std::optional<std::uint64_t> InputFile::Size() const noexcept {
    struct stat status {};
    if (::fstat(descriptor_, &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
    return static_cast<std::uint64_t>(status.st_size);
}

NewFile::~NewFile() {
    Close();
}

bool NewFile::Create(const std::string& path) noexcept {
    constexpr mode_t readableAndWritable = 0666;
    do {
        descriptor_ = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, readableAndWritable);
    } while (descriptor_ < 0 && errno == EINTR);
    return descriptor_ >= 0;
}

bool NewFile::TakePermissions(const std::string& path) noexcept {
    constexpr mode_t permissions = 0777;
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && ::fchmod(descriptor_, status.st_mode & permissions) == 0;
}

bool NewFile::Write(const void* data, std::size_t size) noexcept {
    const auto* bytes = static_cast<const unsigned char*>(data);
    while (size > 0) {
        const ssize_t put = ::write(descriptor_, bytes, std::min(size, maxAtOnce));
        if (put < 0 && errno == EINTR) continue;
        if (put < 0) return false;
        bytes += put;
        size -= static_cast<std::size_t>(put);
    }
    return true;
}

bool NewFile::Finish() noexcept {
    int synced;
    do {
        synced = ::fsync(descriptor_);
    } while (synced != 0 && errno == EINTR);
    // Some file systems have nothing to do, and say that the call makes no sense for them.
    if (synced != 0 && errno != EINVAL) return false;
    const int closed = ::close(descriptor_);
    descriptor_ = -1;
    return closed == 0 || errno == EINTR;
}

void NewFile::Close() noexcept {
    if (descriptor_ >= 0) ::close(descriptor_);
    descriptor_ = -1;
}

Target LookAtTarget(const std::string& path) noexcept {
    constexpr mode_t writable = 0222;
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) return Target::Nothing;
    if (!S_ISREG(status.st_mode)) return Target::OtherThing;
    // The superuser may write to any file, but means those that are marked no more than anybody else.
    const bool marked = (status.st_mode & writable) == 0;
    return marked || ::access(path.c_str(), W_OK) != 0 ? Target::ReadOnlyFile : Target::File;
}

bool MoveToFreeName(const std::string& from, const std::string& to) noexcept {
    if (::link(from.c_str(), to.c_str()) == 0) {
        if (::unlink(from.c_str()) == 0) return true;
        const int failure = errno;
        ::unlink(to.c_str());
        errno = failure;
        return false;
    }
    // Not every file system has links; then the name might be taken between the look and the move.
    const bool noLinks = errno == EPERM || errno == EOPNOTSUPP || errno == ENOSYS || errno == EMLINK;
    if (!noLinks) return false;
    struct stat status {};
    if (::stat(to.c_str(), &status) == 0) {
        errno = EEXIST;
        return false;
    }
    return ::rename(from.c_str(), to.c_str()) == 0;
}

bool MoveOver(const std::string& from, const std::string& to) noexcept {
    return ::rename(from.c_str(), to.c_str()) == 0;
}

bool RemoveFile(const std::string& path) noexcept {
    return ::unlink(path.c_str()) == 0;
}

unsigned long ProcessNumber() noexcept {
    return static_cast<unsigned long>(::getpid());
}

int LastFailure() noexcept {
    return errno;
}

bool NameIsTaken(int failure) noexcept {
    return failure == EEXIST;
}

std::string FailureText(int failure) {
    return std::generic_category().message(failure);
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
