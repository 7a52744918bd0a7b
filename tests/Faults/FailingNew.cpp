#include <cstdlib>
#include <new>

#include "Faults/Faults.h"

// Where a sanitizer has the C library's allocator for itself, operator new is what fails. In a file of their own, as
// compilers that see through one of the two take them for mismatched.

void* operator new(std::size_t size) {
    void* const taken =
        orvalo::faults::Fails(orvalo::faults::memory, ENOMEM) ? nullptr : std::malloc(size == 0 ? 1 : size);
    if (taken == nullptr) throw std::bad_alloc();
    orvalo::faults::Count(orvalo::faults::held.allocations, 1);
    return taken;
}

void* operator new[](std::size_t size) {
    return operator new(size);
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    try {
        return operator new(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

void* operator new[](std::size_t size, const std::nothrow_t& nothrow) noexcept {
    return operator new(size, nothrow);
}

void operator delete(void* taken) noexcept {
    if (taken != nullptr) orvalo::faults::Count(orvalo::faults::held.allocations, -1);
    std::free(taken);
}
void operator delete(void* taken, std::size_t) noexcept {
    operator delete(taken);
}
void operator delete[](void* taken) noexcept {
    operator delete(taken);
}
void operator delete[](void* taken, std::size_t) noexcept {
    operator delete(taken);
}
