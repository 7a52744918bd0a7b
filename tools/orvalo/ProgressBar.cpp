#include "ProgressBar.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <mutex>
#include <string>
#include <utility>

#include <fmt/format.h>

#include "HarmlessText.h"
#include "PathText.h"
#include "Terminal.h"

namespace {

constexpr std::chrono::milliseconds patience{200};
constexpr std::chrono::milliseconds redrawEvery{100};
constexpr std::size_t barWidth = 30;
constexpr const char* eraseLine = "\r\033[K";

std::string ShownState(const ProgressBar::State& state) {
    if (state.total == 0) return state.done == 0 ? "reading" : fmt::format("{} cubes", state.done);
    const double part = std::min(1.0, static_cast<double>(state.done) / static_cast<double>(state.total));
    const auto filled = static_cast<std::size_t>(part * barWidth);
    return fmt::format("[{}{}] {:3.0f}%", std::string(filled, '#'), std::string(barWidth - filled, '.'), part * 100);
}

/// What the reading thread stored last.
template <class T>
T Published(T& progress) {
#if defined(__cpp_lib_atomic_ref)
    return std::atomic_ref(progress).load(std::memory_order_relaxed);
#else
    T value;
    __atomic_load(&progress, &value, __ATOMIC_RELAXED);
    return value;
#endif
}

}  // namespace

ProgressBar::ProgressBar(const std::string& path, std::function<State()> state)
    : label_(Harmless(TextOf(PathOf(path).filename()))), state_(std::move(state)) {
    if (IsTerminal(stderr)) thread_ = std::thread(&ProgressBar::Run, this);
}

ProgressBar::~ProgressBar() {
    if (!thread_.joinable()) return;
    {
        const std::lock_guard lock(mutex_);
        stopped_ = true;
    }
    stop_.notify_one();
    thread_.join();
}

void ProgressBar::Run() {
    std::unique_lock lock(mutex_);
    const auto stopped = [this] { return stopped_; };
    if (stop_.wait_for(lock, patience, stopped)) return;
    do {
        Draw();
    } while (!stop_.wait_for(lock, redrawEvery, stopped));
    std::fputs(eraseLine, stderr);
    std::fflush(stderr);
}

void ProgressBar::Draw() const {
    // A line that wrapped could not be wiped away.
    const std::string line = fmt::format("{}  {}", ShownState(state_()), label_).substr(0, TerminalWidth(stderr) - 1);
    std::fputs((eraseLine + line).c_str(), stderr);
    std::fflush(stderr);
}

ProgressBar::State CubesState(unsigned long long& cubesRead, std::uint64_t declared) {
    return {Published(cubesRead), declared};
}

ProgressBar::State PercentState(float& percent) {
    return {static_cast<std::uint64_t>(Published(percent)), 100};
}
