#include "Common/Workers.h"

#include <algorithm>
#include <exception>
#include <mutex>
#include <new>
#include <system_error>
#include <thread>
#include <vector>

#include "Common/Platform.h"

namespace orvalo {

namespace {

/// The threads of a team, joined wherever it is left.
class Threads {
public:
    Threads() = default;
    Threads(const Threads&) = delete;
    Threads& operator=(const Threads&) = delete;
    ~Threads() {
        for (std::thread& thread : threads_) thread.join();
    }

    /// False where the system has no thread to give.
    template <class Body>
    bool Start(const Body& body) noexcept {
        try {
            threads_.emplace_back(body);
            return true;
        } catch (const std::system_error&) {
        } catch (const std::bad_alloc&) {
        }
        return false;
    }

private:
    std::vector<std::thread> threads_;
};

}  // namespace

unsigned int ThreadCount(unsigned int asked) noexcept {
    // Beyond this the threads would rather wait for memory and for one another.
    constexpr unsigned int most = 256;
    return std::min(asked == 0 ? platform::ProcessorCount() : asked, most);
}

void RunTeam(unsigned int count, const std::function<void(unsigned int member)>& work) {
    std::mutex mutex;
    std::exception_ptr failure;
    const auto guarded = [&](unsigned int member) {
        try {
            work(member);
        } catch (...) {
            const std::lock_guard lock(mutex);
            if (!failure) failure = std::current_exception();
        }
    };
    {
        Threads threads;
        for (unsigned int member = 1; member < count; ++member) {
            if (!threads.Start([&guarded, member] { guarded(member); })) break;
        }
        guarded(0);
    }
    if (failure) std::rethrow_exception(failure);
}

}  // namespace orvalo
