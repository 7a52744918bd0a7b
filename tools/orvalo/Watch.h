#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

/// Files that are looked at again and again for changes.
class Watch {
public:
    using Paths = std::vector<std::string>;

    /// `files` gives the paths that count, whether they exist or not; it is asked again with every look. `withIncluded`
    /// gives such a path and those of all files that it includes; it is asked again when one of them has changed.
    Watch(std::function<Paths()> files, std::function<Paths(const std::string&)> withIncluded)
        : files_(std::move(files)), withIncluded_(std::move(withIncluded)), seen_(Look()) {}

    /// Waits until a file changes, appears or goes, and then until no file has changed for a moment; gives its path.
    std::string WaitForChange();

private:
    /// When a file was written, on the system's clock, and how large it was, when it was looked at.
    using State = std::pair<std::uint64_t, std::uintmax_t>;
    using Snapshot = std::map<std::string, State>;

    Snapshot Look();

    std::function<Paths()> files_;
    std::function<Paths(const std::string&)> withIncluded_;
    /// Each file with those that it includes.
    std::map<std::string, Snapshot> known_;
    Snapshot seen_;
};
