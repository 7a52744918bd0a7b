#pragma once

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

/// Shows on standard error how far a long read has come, as long as the object lives. It appears only where that is a
/// terminal and only after a moment, and wipes itself away at the end.
class ProgressBar {
public:
    struct State {
        std::uint64_t done = 0;
        /// 0 when not known: then just `done` is shown.
        std::uint64_t total = 0;
    };

    /// `state` is asked from a thread of the bar's own.
    ProgressBar(const std::string& path, std::function<State()> state);
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;
    ~ProgressBar();

private:
    void Run();
    void Draw() const;

    std::string label_;
    std::function<State()> state_;
    std::mutex mutex_;
    std::condition_variable stop_;
    bool stopped_ = false;
    std::thread thread_;
};

/// The state by a counter of cubes or by percents that the library stores from the reading thread.
ProgressBar::State CubesState(unsigned long long& cubesRead, std::uint64_t declared);
ProgressBar::State PercentState(float& percent);
