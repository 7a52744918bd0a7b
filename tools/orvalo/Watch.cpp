#include "Watch.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <string>
#include <system_error>
#include <thread>
#include <utility>

#include "PathText.h"

namespace {

constexpr std::chrono::milliseconds lookEvery{150};

using State = std::pair<std::filesystem::file_time_type, std::uintmax_t>;

State StateOf(const std::string& name) {
    const std::filesystem::path path = PathOf(name);
    std::error_code none;
    const auto written = std::filesystem::last_write_time(path, none);
    return {written, std::filesystem::file_size(path, none)};
}

}  // namespace

Watch::Snapshot Watch::Look() {
    Snapshot snapshot;
    for (const std::string& path : files_()) {
        Snapshot& known = known_[path];
        const bool same = !known.empty() && std::all_of(known.begin(), known.end(), [](const auto& file) {
            return StateOf(file.first) == file.second;
        });
        if (!same) {
            known.clear();
            for (const std::string& file : withIncluded_(path)) known[file] = StateOf(file);
        }
        snapshot.insert(known.begin(), known.end());
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
