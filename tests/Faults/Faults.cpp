#include "Faults/Faults.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <random>
#include <string>
#include <string_view>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orvalo::faults {

namespace {

std::atomic<long> readCalls;

/// Only one thread reads at a time where reads vary.
std::size_t Most() {
    if (transfer.seed == 0) return transfer.most;
    static std::minstd_rand random;
    static unsigned int seeded = 0;
    if (seeded != transfer.seed) random.seed(seeded = transfer.seed);
    return 1 + random() % transfer.most;
}

/// Whether a call may read from `place` on, up to `size` bytes, which may become fewer.
bool Reads(std::size_t place, std::size_t& size) {
    if (raising != nullptr && raising->Fails()) raised = true;
    if (Fails(reading, EIO)) return false;
    if (transfer.interrupted && ++readCalls % 2 != 0) {
        errno = EINTR;
        return false;
    }
    if (place >= transfer.unreadable) {
        errno = EIO;
        return false;
    }
    size = std::min(size, Most());
    size = std::min(size, std::min(transfer.end, transfer.unreadable) - std::min(transfer.end, place));
    return true;
}

}  // namespace

}  // namespace orvalo::faults

using namespace orvalo::faults;

// The linker sends the library's calls here: -Wl,--wrap=open and so on.
extern "C" {

int __real_open(const char* path, int flags, ...);
int __wrap_open(const char* path, int flags, ...);
int __real_close(int descriptor);
int __wrap_close(int descriptor);
ssize_t __real_read(int descriptor, void* buffer, size_t size);
ssize_t __wrap_read(int descriptor, void* buffer, size_t size);
ssize_t __real_pread(int descriptor, void* buffer, size_t size, off_t offset);
ssize_t __wrap_pread(int descriptor, void* buffer, size_t size, off_t offset);
int __real_stat(const char* path, struct stat* status);
int __wrap_stat(const char* path, struct stat* status);
int __real_fstat(int descriptor, struct stat* status);
int __wrap_fstat(int descriptor, struct stat* status);
ssize_t __real_write(int descriptor, const void* data, size_t size);
ssize_t __wrap_write(int descriptor, const void* data, size_t size);
int __real_fsync(int descriptor);
int __wrap_fsync(int descriptor);
int __real_fchmod(int descriptor, mode_t mode);
int __wrap_fchmod(int descriptor, mode_t mode);
int __real_link(const char* from, const char* to);
int __wrap_link(const char* from, const char* to);
int __real_rename(const char* from, const char* to);
int __wrap_rename(const char* from, const char* to);

int __wrap_open(const char* path, int flags, ...) {
    if (Fails(opening, EACCES)) return -1;
    std::string elsewhere;
    if (const std::string_view asked(path); asked.starts_with("/proc/") || asked.starts_with("/sys/")) {
        if (systemRoot != nullptr) path = elsewhere.append(systemRoot).append(asked).c_str();
    }
    std::va_list arguments;
    va_start(arguments, flags);
    const int descriptor = __real_open(path, flags, (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0);
    va_end(arguments);
    if (descriptor >= 0) ++held.files;
    return descriptor;
}

int __wrap_close(int descriptor) {
    --held.files;
    const int closed = __real_close(descriptor);
    return Fails(saving, EIO) ? -1 : closed;
}

ssize_t __wrap_write(int descriptor, const void* data, size_t size) {
    if (raising != nullptr && raising->Fails()) raised = true;
    if (Fails(saving, ENOSPC)) return -1;
    if (transfer.interrupted && ++readCalls % 2 != 0) {
        errno = EINTR;
        return -1;
    }
    if (room == 0 && size > 0) {
        errno = ENOSPC;
        return -1;
    }
    size = std::min({size, Most(), room});
    if (room != static_cast<std::size_t>(-1)) room -= size;
    return __real_write(descriptor, data, size);
}

int __wrap_fsync(int descriptor) {
    return Fails(saving, EIO) ? -1 : __real_fsync(descriptor);
}

int __wrap_fchmod(int descriptor, mode_t mode) {
    return Fails(saving, EPERM) ? -1 : __real_fchmod(descriptor, mode);
}

int __wrap_link(const char* from, const char* to) {
    if (!links) {
        errno = EPERM;
        return -1;
    }
    return Fails(saving, ENOSPC) ? -1 : __real_link(from, to);
}

int __wrap_rename(const char* from, const char* to) {
    return Fails(saving, EIO) ? -1 : __real_rename(from, to);
}

ssize_t __wrap_read(int descriptor, void* buffer, size_t size) {
    const auto place = static_cast<std::size_t>(std::max<off_t>(::lseek(descriptor, 0, SEEK_CUR), 0));
    return Reads(place, size) ? __real_read(descriptor, buffer, size) : -1;
}

ssize_t __wrap_pread(int descriptor, void* buffer, size_t size, off_t offset) {
    return Reads(static_cast<std::size_t>(offset), size) ? __real_pread(descriptor, buffer, size, offset) : -1;
}

int __wrap_stat(const char* path, struct stat* status) {
    return Fails(asking, EACCES) ? -1 : __real_stat(path, status);
}

int __wrap_fstat(int descriptor, struct stat* status) {
    return Fails(asking, EIO) ? -1 : __real_fstat(descriptor, status);
}

}  // extern "C"
