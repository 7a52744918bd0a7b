#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

/// Everything that the library asks of the operating system. A port replaces the one source file behind this.
namespace orvalo::platform {

/// A zeroed buffer of `count` elements, or null when the product overflows or memory does not suffice. From about a
/// page on, memory is committed only as it is written, so a count that a file merely claims costs address space.
std::shared_ptr<unsigned char[]> AllocateZeroed(std::size_t count, std::size_t elementSize) noexcept;

/// As AllocateZeroed, for a buffer that will be filled from its start on: the system may commit it in steps of a few
/// MiB, so that filling it costs less.
std::shared_ptr<unsigned char[]> AllocateToFill(std::size_t count, std::size_t elementSize) noexcept;

/// A file open for reading in binary mode.
class InputFile {
public:
    InputFile() = default;
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;
    ~InputFile();

    /// Whether the path could be opened.
    bool Open(const std::string& path) noexcept;
    void Close() noexcept;

    /// Fills `buffer` with up to `size` bytes: fewer only at the end of the file, nothing on a read error.
    std::optional<std::size_t> Read(void* buffer, std::size_t size) noexcept;

    /// The size of a regular file; nothing for anything else.
    std::optional<std::uint64_t> Size() const noexcept;

private:
    int descriptor_ = -1;
};

bool FileExists(const std::string& path) noexcept;

/// The path made absolute and freed of "." and "..", without following links. Nothing when the current directory is
/// unknown. Throws std::bad_alloc.
std::optional<std::string> AbsolutePath(const std::string& path);

}  // namespace orvalo::platform
