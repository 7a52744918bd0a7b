#pragma once

#include <filesystem>
#include <string>

/// A copy of what can be read only once, in a temporary directory that is removed with the object.
class Spool {
public:
    /// Reads the pipe of that name, or standard input if it is empty, to its end. Models look for included files beside
    /// themselves, so links to those of `includedFrom` are put beside the copy. Throws std::runtime_error. Ctrl-C
    /// ends the copy early and raises the flag of Interruption.
    Spool(const std::string& pipe, const std::string& includedFrom);
    Spool(const Spool&) = delete;
    Spool& operator=(const Spool&) = delete;
    ~Spool();

    const std::string& Path() const { return path_; }
    const std::string& IncludedFrom() const { return includedFrom_; }

private:
    std::filesystem::path directory_;
    std::string path_;
    std::string includedFrom_;
};
