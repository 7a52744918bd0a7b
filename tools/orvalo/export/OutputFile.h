#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

/// Why a file could not be written; the text names it.
class OutputError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A file that is complete or not there: it is written under another name in the same directory, and moved at the end.
/// Everything throws OutputError.
class OutputFile {
public:
    /// Refuses a path at which something is that is not to be, or cannot be, replaced: anything if `overwrite` is not
    /// set, otherwise what is no regular file or is marked read-only.
    OutputFile(const std::string& path, bool overwrite);
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    /// Removes what was written, unless it was committed.
    ~OutputFile();

    void Write(const void* data, std::size_t size);
    void Write(std::string_view text) { Write(text.data(), text.size()); }
    /// Bytes written so far.
    std::uint64_t Position() const { return flushed_ + buffer_.size(); }
    /// Overwrites bytes that were written before.
    void Patch(std::uint64_t position, const void* data, std::size_t size);
    /// Ends writing, before the file gets its name; for whoever has many files.
    void Close();
    /// Gives the file its name. Nothing may be written after that.
    void Commit();

private:
    void Flush();
    void WriteAll(const char* data, std::size_t size);
    void RequireGood() const;

    std::string name_;
    std::filesystem::path path_;
    std::filesystem::path temporary_;
    bool overwrite_;
    std::ofstream stream_;
    std::uint64_t flushed_ = 0;
    std::vector<char> buffer_;
};

/// Throws OutputError unless a file may be put at a path: nothing is there, or what is there may be replaced.
void RequirePlace(const std::string& path, bool overwrite);

/// Throws OutputError if `bytes` more do not fit on the disk that a path is on, as far as it tells.
void RequireSpace(const std::string& path, std::uint64_t bytes, const std::string& advice);
