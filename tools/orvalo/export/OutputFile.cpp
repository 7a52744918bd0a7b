#include "OutputFile.h"

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <ios>
#include <random>
#include <string>
#include <system_error>

#include <fmt/format.h>

#include "PathText.h"

namespace fs = std::filesystem;

namespace {

constexpr std::size_t bufferSize = std::size_t{1} << 18U;
constexpr const char* existing = "The file exists. With --force it is replaced.";

fs::path DirectoryOf(const fs::path& path) {
    const fs::path parent = path.parent_path();
    return parent.empty() ? fs::path(".") : parent;
}

/// What the system said last.
std::string Reason() {
    return std::generic_category().message(errno);
}

[[noreturn]] void Refuse(const std::string& path, const std::string& why) {
    throw OutputError(fmt::format("{}: error: {}", path, why));
}

}  // namespace

OutputFile::OutputFile(const std::string& path, bool overwrite)
    : name_(path), path_(PathOf(path)), overwrite_(overwrite) {
    RequirePlace(name_, overwrite_);
    buffer_.reserve(bufferSize);
    // A name that nobody else comes upon.
    std::random_device random;
    const std::string hidden = fmt::format(".{}.{:08x}{:08x}", TextOf(path_.filename()), random(), random());
    const fs::path temporary = DirectoryOf(path_) / PathOf(hidden);
    stream_.rdbuf()->pubsetbuf(nullptr, 0);
    stream_.open(temporary, std::ios::binary | std::ios::out);
    if (!stream_) Refuse(name_, fmt::format("Unable to create the file: {}.", Reason()));
    temporary_ = temporary;
    // Not every file system has permissions.
    std::error_code ignored;
    const fs::file_status there = fs::symlink_status(path_, ignored);
    if (fs::is_regular_file(there)) fs::permissions(temporary_, there.permissions(), ignored);
}

OutputFile::~OutputFile() {
    if (stream_.is_open()) stream_.close();
    std::error_code ignored;
    if (!temporary_.empty()) fs::remove(temporary_, ignored);
}

void OutputFile::RequireGood() const {
    if (!stream_) Refuse(name_, fmt::format("Unable to write: {}.", Reason()));
}

void OutputFile::WriteAll(const char* data, std::size_t size) {
    stream_.write(data, static_cast<std::streamsize>(size));
    RequireGood();
    flushed_ += size;
}

void OutputFile::Flush() {
    WriteAll(buffer_.data(), buffer_.size());
    buffer_.clear();
}

void OutputFile::Write(const void* data, std::size_t size) {
    const char* from = static_cast<const char*>(data);
    if (buffer_.size() + size > bufferSize) Flush();
    if (size >= bufferSize) {
        WriteAll(from, size);
    } else {
        buffer_.insert(buffer_.end(), from, from + size);
    }
}

void OutputFile::Patch(std::uint64_t position, const void* data, std::size_t size) {
    Flush();
    stream_.seekp(static_cast<std::streamoff>(position));
    stream_.write(static_cast<const char*>(data), static_cast<std::streamsize>(size));
    stream_.seekp(0, std::ios::end);
    RequireGood();
}

void OutputFile::Close() {
    if (!stream_.is_open()) return;
    Flush();
    stream_.close();
    RequireGood();
}

void OutputFile::Commit() {
    Close();
    std::error_code error;
    // A link fails where a file has appeared meanwhile; not every file system has links.
    if (!overwrite_) fs::create_hard_link(temporary_, path_, error);
    if (!overwrite_ && error == std::errc::file_exists) Refuse(name_, existing);
    if (overwrite_ || error) {
        fs::rename(temporary_, path_, error);
        if (error) Refuse(name_, fmt::format("Unable to name the file so: {}.", error.message()));
    } else {
        fs::remove(temporary_, error);
    }
    temporary_.clear();
}

void RequirePlace(const std::string& path, bool overwrite) {
    std::error_code unknown;
    const fs::file_status there = fs::symlink_status(PathOf(path), unknown);
    if (!fs::exists(there)) return;
    if (fs::is_directory(there)) Refuse(path, "This is a directory.");
    if (!overwrite) Refuse(path, existing);
    // A link is replaced as what it is, unless a device or the like is meant by it.
    const fs::file_status meant = fs::status(PathOf(path), unknown);
    if (!fs::exists(meant)) return;
    if (!fs::is_regular_file(meant)) Refuse(path, "This is no regular file.");
    if ((meant.permissions() & fs::perms::owner_write) == fs::perms::none)
        Refuse(path, "The file is marked read-only.");
}

void RequireSpace(const std::string& path, std::uint64_t bytes, const std::string& advice) {
    std::error_code unknown;
    const fs::space_info space = fs::space(DirectoryOf(PathOf(path)), unknown);
    if (unknown || space.available >= bytes) return;
    constexpr double gibibyte = 1024.0 * 1024 * 1024;
    throw OutputError(fmt::format("{}: error: This takes {:.1f} GiB, and {:.1f} GiB are free.{}", path,
                                  static_cast<double>(bytes) / gibibyte,
                                  static_cast<double>(space.available) / gibibyte, advice));
}
