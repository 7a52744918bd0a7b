#pragma once

#include <atomic>
#include <type_traits>

namespace orvalo {

/// Stores the progress of a read where the caller may be watching it from another thread, unless `watched` is null. A
/// relaxed atomic store: the watcher sees whole values, and the compiler does not gather many stores into one at the
/// end, but nothing else that the reading thread wrote comes with them.
template <class T>
void Publish(T* watched, std::type_identity_t<T> value) {
    if (watched == nullptr) return;
#if defined(__cpp_lib_atomic_ref)
    std::atomic_ref(*watched).store(value, std::memory_order_relaxed);
#else
    __atomic_store(watched, &value, __ATOMIC_RELAXED);
#endif
}

/// What was published last, for whoever watches.
template <class T>
T Published(T& watched) {
#if defined(__cpp_lib_atomic_ref)
    return std::atomic_ref(watched).load(std::memory_order_relaxed);
#else
    T value;
    __atomic_load(&watched, &value, __ATOMIC_RELAXED);
    return value;
#endif
}

}  // namespace orvalo
