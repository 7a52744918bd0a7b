#include "Results/FailingAllocations.h"

#include <cstdlib>
#include <limits>
#include <new>

namespace orvalo {

thread_local std::size_t allocationsLeft = std::numeric_limits<std::size_t>::max();

}  // namespace orvalo

// In a file of their own, as compilers that see through one of the two take them for mismatched.

void* operator new(std::size_t size) {
    void* const memory = orvalo::allocationsLeft == 0 ? nullptr : std::malloc(size == 0 ? 1 : size);
    if (memory == nullptr) throw std::bad_alloc();
    --orvalo::allocationsLeft;
    return memory;
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
