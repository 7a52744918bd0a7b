#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <new>
#include <system_error>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include "Common/Platform.h"

namespace orvalo::platform {

namespace {

// Smaller requests go to the heap. It may clear what it hands out, and so commit it; a page of that is affordable
// even when a file asks for very many buffers.
constexpr std::size_t mappedFrom = 4096;

// Under the address sanitizer every buffer comes from its heap, which alone knows where buffers end.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool heapOnly = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
constexpr bool heapOnly = true;
#else
constexpr bool heapOnly = false;
#endif
#else
constexpr bool heapOnly = false;
#endif

struct FreeHeap {
    void operator()(unsigned char* buffer) const noexcept { std::free(buffer); }
};

struct Unmap {
    std::size_t size;
    void operator()(unsigned char* buffer) const noexcept { ::munmap(buffer, size); }
};

}  // namespace

std::shared_ptr<unsigned char[]> AllocateZeroed(std::size_t count, std::size_t elementSize) noexcept {
    constexpr auto largest = static_cast<std::size_t>(std::numeric_limits<std::ptrdiff_t>::max());
    if (elementSize != 0 && count > largest / elementSize) return nullptr;
    const std::size_t size = std::max<std::size_t>(count * elementSize, 1);
    try {
        if (heapOnly || size < mappedFrom) {
            auto* buffer = static_cast<unsigned char*>(std::calloc(size, 1));
            if (buffer == nullptr) return nullptr;
            return {buffer, FreeHeap{}};
        }
        void* mapped = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (mapped == MAP_FAILED) return nullptr;
        return {static_cast<unsigned char*>(mapped), Unmap{size}};
    } catch (const std::bad_alloc&) {
        return nullptr;  // The pointer's bookkeeping did not fit; it has released the buffer.
    }
}

std::shared_ptr<unsigned char[]> AllocateToFill(std::size_t count, std::size_t elementSize) noexcept {
    auto buffer = AllocateZeroed(count, elementSize);
#if defined(MADV_HUGEPAGE)
    // Below this the pages at either end, which the system keeps small, would be most of the buffer.
    constexpr std::size_t hugeFrom = std::size_t{4} << 20U;
    if (!heapOnly && buffer && count * elementSize >= hugeFrom) {
        ::madvise(buffer.get(), count * elementSize, MADV_HUGEPAGE);
    }
#endif
    return buffer;
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
    constexpr std::size_t mostAtOnce = std::size_t{1} << 30;
    auto* const bytes = static_cast<unsigned char*>(buffer);
    std::size_t filled = 0;
    while (filled < size) {
        const ssize_t got = ::read(descriptor_, bytes + filled, std::min(size - filled, mostAtOnce));
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) return std::nullopt;
        if (got == 0) break;
        filled += static_cast<std::size_t>(got);
    }
    return filled;
}

std::optional<std::uint64_t> InputFile::Size() const noexcept {
    struct stat status {};
    if (::fstat(descriptor_, &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
    return static_cast<std::uint64_t>(status.st_size);
}

bool FileExists(const std::string& path) noexcept {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0;
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
