#include "Faults/Faults.h"

#include <algorithm>
#include <cerrno>
#include <random>

#include <sys/stat.h>
#include <unistd.h>

namespace orvalo::faults {

namespace {

long readCalls;

std::size_t Most() {
    if (transfer.seed == 0) return transfer.most;
    static std::minstd_rand random;
    static unsigned int seeded = 0;
    if (seeded != transfer.seed) random.seed(seeded = transfer.seed);
    return 1 + random() % transfer.most;
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
int __real_stat(const char* path, struct stat* status);
int __wrap_stat(const char* path, struct stat* status);
int __real_fstat(int descriptor, struct stat* status);
int __wrap_fstat(int descriptor, struct stat* status);

int __wrap_open(const char* path, int flags, ...) {
    if (Fails(opening, EACCES)) return -1;
    const int descriptor = __real_open(path, flags);
    if (descriptor >= 0) ++held.files;
    return descriptor;
}

int __wrap_close(int descriptor) {
    --held.files;
    return __real_close(descriptor);
}

ssize_t __wrap_read(int descriptor, void* buffer, size_t size) {
    if (raising != nullptr && raising->Fails()) raised = true;
    if (Fails(reading, EIO)) return -1;
    if (transfer.interrupted && ++readCalls % 2 != 0) {
        errno = EINTR;
        return -1;
    }
    size = std::min(size, Most());
    if (transfer.end != static_cast<std::size_t>(-1)) {
        const auto place = static_cast<std::size_t>(::lseek(descriptor, 0, SEEK_CUR));
        size = std::min(size, transfer.end - std::min(transfer.end, place));
    }
    return __real_read(descriptor, buffer, size);
}

int __wrap_stat(const char* path, struct stat* status) {
    return Fails(asking, EACCES) ? -1 : __real_stat(path, status);
}

int __wrap_fstat(int descriptor, struct stat* status) {
    return Fails(asking, EIO) ? -1 : __real_fstat(descriptor, status);
}

}  // extern "C"
