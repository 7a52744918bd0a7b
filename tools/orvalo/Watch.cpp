#include "Watch.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <string>
#include <thread>
#include <utility>

#if defined(_WIN32)
#include <windows.h>

#include "PathText.h"
#else
#include <filesystem>
#include <system_error>
#endif

namespace {

constexpr std::chrono::milliseconds lookEvery{150};

using State = std::pair<std::uint64_t, std::uintmax_t>;

#if defined(_WIN32)
// The standard library's times of files are whole seconds there.
State StateOf(const std::string& path) {
    WIN32_FILE_ATTRIBUTE_DATA found;
    if (::GetFileAttributesExW(PathOf(path).c_str(), GetFileExInfoStandard, &found) == 0) return {};
    ULARGE_INTEGER written;
    written.LowPart = found.ftLastWriteTime.dwLowDateTime;
    written.HighPart = found.ftLastWriteTime.dwHighDateTime;
    ULARGE_INTEGER size;
    size.LowPart = found.nFileSizeLow;
    size.HighPart = found.nFileSizeHigh;
    return {written.QuadPart, size.QuadPart};
}
#else
State StateOf(const std::string& path) {
    std::error_code none;
    const auto written = std::filesystem::last_write_time(path, none).time_since_epoch();
    return {static_cast<std::uint64_t>(written.count()), std::filesystem::file_size(path, none)};
}
#endif

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
