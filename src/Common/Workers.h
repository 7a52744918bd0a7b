#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <functional>

namespace orvalo {

/// How many threads work where `asked` for so many: 0 asks for as many as the process may run.
unsigned int ThreadCount(unsigned int asked) noexcept;

/// Calls `work(member)` once for each member of a team of at most `count`, counted from 0, which is the calling thread.
/// A member whose thread cannot be started is missing. Returns when all have returned; what one of them has thrown is
/// then thrown on.
void RunTeam(unsigned int count, const std::function<void(unsigned int member)>& work);

/// Has a team of at most `count` members call `work(i)` once for each i below `pieces`, in no order.
template <class Work>
void ShareOut(unsigned int count, std::size_t pieces, const Work& work) {
    std::atomic<std::size_t> next{0};
    RunTeam(static_cast<unsigned int>(std::min<std::size_t>(count, pieces)), [&](unsigned int) {
        try {
            for (std::size_t i; (i = next.fetch_add(1, std::memory_order_relaxed)) < pieces;) work(i);
        } catch (...) {
            next.store(pieces, std::memory_order_relaxed);
            throw;
        }
    });
}

}  // namespace orvalo
