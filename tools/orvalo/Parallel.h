#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

/// How many threads to take: those asked for, or as many as there are processors for 0.
inline unsigned ThreadCount(unsigned asked) {
    return asked > 0 ? asked : std::max(1U, std::thread::hardware_concurrency());
}

/// Calls `work` with each number below `count`, on several threads at once. The first exception ends it and is passed
/// on.
template <class Work>
void ForEachInParallel(std::size_t count, unsigned threads, const Work& work) {
    std::atomic<std::size_t> next = 0;
    std::exception_ptr failure;
    std::mutex mutex;
    const auto run = [&] {
        try {
            for (std::size_t i = next++; i < count; i = next++) work(i);
        } catch (...) {
            const std::lock_guard lock(mutex);
            if (!failure) failure = std::current_exception();
            next = count;
        }
    };
    std::vector<std::jthread> others;
    const std::size_t useful = std::min<std::size_t>(ThreadCount(threads), count);
    try {
        for (std::size_t i = 1; i < useful; ++i) others.emplace_back(run);
    } catch (const std::system_error&) {
        // Where the system has no more of them to give, those that there are do all of it.
    }
    run();
    others.clear();
    if (failure) std::rethrow_exception(failure);
}
