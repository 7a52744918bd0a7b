#include "Watched.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <string>
#include <thread>

#include "DeclaredCubes.h"
#include "Unlocked.h"

namespace orvalo::python {

namespace {

namespace py = pybind11;
using Clock = std::chrono::steady_clock;

constexpr auto betweenLooks = std::chrono::milliseconds(50);
constexpr auto betweenCalls = std::chrono::milliseconds(100);

class Worker {
public:
    Worker(const std::function<void()>& work, std::atomic<bool>& stop)
        : stop_(stop), thread_([this, &work] { Run(work); }) {}

    /// Waits a little, without the interpreter's lock. True once the work has ended.
    bool HasEnded() {
        bool ended = false;
        const auto wait = [&] {
            std::unique_lock lock(mutex_);
            ended = ended_.wait_for(lock, betweenLooks, [this] { return done_; });
        };
        Unlocked(wait, [this] { stop_ = true; });
        return ended;
    }

    /// Must be called before this is destroyed.
    void Join() {
        Unlocked([this] { thread_.join(); });
    }

    void RethrowFailure() const {
        if (failure_) std::rethrow_exception(failure_);
    }

private:
    void Run(const std::function<void()>& work) {
        try {
            work();
        } catch (...) {
            failure_ = std::current_exception();
        }
        const std::lock_guard lock(mutex_);
        done_ = true;
        ended_.notify_one();
    }

    std::atomic<bool>& stop_;
    std::mutex mutex_;
    std::condition_variable ended_;
    bool done_ = false;
    std::exception_ptr failure_;
    std::thread thread_;
};

}  // namespace

void WaitForTheEnd() {
    for (;;) std::this_thread::sleep_for(std::chrono::hours(1));
}

void RunWatched(const std::function<void()>& work, const std::function<double()>& fraction, std::atomic<bool>& stop,
                const py::object& progress) {
    Worker worker(work, stop);
    try {
        for (Clock::time_point called = Clock::now(); !worker.HasEnded();) {
            if (PyErr_CheckSignals() != 0) throw py::error_already_set();
            if (progress.is_none() || Clock::now() - called < betweenCalls) continue;
            progress(fraction());
            called = Clock::now();
        }
    } catch (...) {
        stop = true;
        // The interpreter has ended during a call, and took its lock from this thread.
        if (PyGILState_Check() == 0) WaitForTheEnd();
        worker.Join();
        throw;
    }
    worker.Join();
    worker.RethrowFailure();
    if (!progress.is_none()) progress(1.0);
}

CubeProgress::CubeProgress(const std::string& path, const py::object& progress)
    : declared_(progress.is_none() ? 0 : DeclaredCubes(path)) {}

double CubeProgress::Fraction() const {
    if (declared_ == 0) return 0.0;
    // The counter is only ever written through std::atomic_ref, which takes no const.
    const auto read = std::atomic_ref(const_cast<unsigned long long&>(read_)).load(std::memory_order_relaxed);
    return std::min(1.0, static_cast<double>(read) / static_cast<double>(declared_));
}

}  // namespace orvalo::python
