#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

/// Files that are looked at again and again for changes.
class Watch {
public:
    /// `list` gives the paths that count, whether they exist or not; it is asked again with every look.
    explicit Watch(std::function<std::vector<std::string>()> list) : list_(std::move(list)), seen_(Look()) {}

    /// Waits until a file changes, appears or goes, and then until no file has changed for a moment; gives its path.
    std::string WaitForChange();

private:
    /// When and how large a file was when it was looked at.
    using State = std::pair<std::filesystem::file_time_type, std::uintmax_t>;
    using Snapshot = std::map<std::string, State>;

    Snapshot Look() const;

    std::function<std::vector<std::string>()> list_;
    Snapshot seen_;
};
