#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "Faults/Faults.h"

using namespace orvalo::faults;

/// What a library keeps for a thread from its first exception on would count as held.
static const bool hasThrown = [] {
    try {
        throw true;
    } catch (bool thrown) {
        return thrown;
    }
}();

// These stand before the C library's own for the whole process, so that memory fails for the standard library too.
extern "C" {

void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* old, size_t size);
void* __libc_memalign(size_t alignment, size_t size);
void __libc_free(void* memory);

static void* Counted(void* taken) {
    if (taken != nullptr) Count(held.allocations, 1);
    return taken;
}

void* malloc(size_t size) {
    return Fails(memory, ENOMEM) ? nullptr : Counted(__libc_malloc(size));
}

void* calloc(size_t count, size_t size) {
    return Fails(memory, ENOMEM) ? nullptr : Counted(__libc_calloc(count, size));
}

void* realloc(void* old, size_t size) {
    if (Fails(memory, ENOMEM)) return nullptr;
    return old == nullptr ? Counted(__libc_realloc(old, size)) : __libc_realloc(old, size);
}

void* aligned_alloc(size_t alignment, size_t size) {
    return Fails(memory, ENOMEM) ? nullptr : Counted(__libc_memalign(alignment, size));
}

/// What Clang's library takes for exceptions. It does not fail: version 14 then takes memory from a reserve that is not
/// aligned as the unwinder needs it, so that a throw may end in a fault.
int posix_memalign(void** taken, size_t alignment, size_t size) {
    *taken = Counted(__libc_memalign(alignment, size));
    return *taken == nullptr ? ENOMEM : 0;
}

void free(void* taken) {
    if (taken != nullptr) Count(held.allocations, -1);
    __libc_free(taken);
}

void* mmap(void* address, size_t size, int protection, int flags, int descriptor, off_t offset) {
    if (Fails(memory, ENOMEM)) return reinterpret_cast<void*>(-1);
#if defined(SYS_mmap2)
    const long mapped =
        ::syscall(SYS_mmap2, address, size, protection, flags, descriptor, static_cast<long>(offset / 4096));
#else
    const long mapped = ::syscall(SYS_mmap, address, size, protection, flags, descriptor, offset);
#endif
    if (mapped != -1) Count(held.mappings, 1);
    if (mapped != -1 && largePages) ::madvise(reinterpret_cast<void*>(mapped), size, MADV_HUGEPAGE);
    return reinterpret_cast<void*>(mapped);
}

int munmap(void* address, size_t size) {
    if (Fails(unmapping, ENOMEM)) return -1;
    Count(held.mappings, -1);
    return static_cast<int>(::syscall(SYS_munmap, address, size));
}

}  // extern "C"
