#include "Watch.h"

#include <chrono>
#include <filesystem>
#include <string>
#include <system_error>
#include <thread>

namespace {

constexpr std::chrono::milliseconds lookEvery{150};

}  // namespace

Watch::Snapshot Watch::Look() const {
    Snapshot snapshot;
    for (const std::string& path : list_()) {
        std::error_code none;
        State& state = snapshot[path];
        state.first = std::filesystem::last_write_time(path, none);
        state.second = std::filesystem::file_size(path, none);
    }
    return snapshot;
}

std::string Watch::WaitForChange() {
    Snapshot now = Look();
    for (; now == seen_; now = Look()) std::this_thread::sleep_for(lookEvery);
    std::string changed;
    for (const auto& [path, state] : now) {
        const auto before = seen_.find(path);
        if (before == seen_.end() || before->second != state) changed = path;
    }
    for (const auto& [path, state] : seen_) {
        if (now.count(path) == 0) changed = path;
    }
    do {
        seen_ = now;
        std::this_thread::sleep_for(lookEvery);
        now = Look();
    } while (now != seen_);
    return changed;
}
