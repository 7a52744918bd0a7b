#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// Everything that the library asks of the operating system. A port replaces the one source file behind this.
namespace orvalo::platform {

/// How the system is to commit pages: one by one, so that nothing is taken for what is not written; or, where it can,
/// in steps of a few MiB, so that filling them costs less.
enum class Pages { Small, Large };

/// At least `size` zeroed bytes, or null. They are committed only as they are written.
void* MapPages(std::size_t size, Pages pages) noexcept;
/// Has what is not committed yet of the pages within [start, start + size) be committed in that way.
void AdvisePages(void* start, std::size_t size, Pages pages) noexcept;
/// Commits the pages that [start, start + size) touches, and leaves what they hold, also what other threads write
/// meanwhile.
void CommitPages(void* start, std::size_t size) noexcept;
/// Gives back what MapPages gave. False where the system refuses.
bool UnmapPages(void* start, std::size_t size) noexcept;
/// Gives back what the pages that lie within [start, start + size) hold: they stay mapped and read as zero.
void DiscardPages(void* start, std::size_t size) noexcept;

/// By what the system knows an open file, and what parts the name of a file from its directory.
#if defined(_WIN32)
using Descriptor = std::intptr_t;
inline constexpr const char* separators = "/\\:";
#else
using Descriptor = int;
inline constexpr const char* separators = "/";
#endif
inline constexpr Descriptor noDescriptor = -1;

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

    /// As Read, from a place of a regular file on. Leaves the place where Read goes on, so that several threads may
    /// read at once.
    std::optional<std::size_t> ReadAt(std::uint64_t offset, void* buffer, std::size_t size) const noexcept;

    /// Moves to a place of a regular file; false where that fails.
    bool Seek(std::uint64_t offset) noexcept;

    /// Where Read goes on in a regular file; nothing for anything else.
    std::optional<std::uint64_t> Place() const noexcept;

    /// The size of a regular file; nothing for anything else.
    std::optional<std::uint64_t> Size() const noexcept;

private:
    Descriptor descriptor_ = noDescriptor;
#if defined(_WIN32)
    /// Where Read goes on: the place that the system keeps is moved by ReadAt, too.
    std::uint64_t place_ = 0;
#endif
};

/// A file that is being written, under a name that nothing else has.
class NewFile {
public:
    NewFile() = default;
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;
    ~NewFile();

    /// Makes an empty file, unless something of that name is there.
    bool Create(const std::string& path) noexcept;
    /// Gives it the permissions of another file.
    bool TakePermissions(const std::string& path) noexcept;
    bool Write(const void* data, std::size_t size) noexcept;
    /// Has what was written reach the medium, so that it is there after a crash, and closes the file.
    bool Finish() noexcept;
    void Close() noexcept;

private:
    Descriptor descriptor_ = noDescriptor;
};

/// What stands under a path to which something is to be written.
enum class Target { Nothing, File, ReadOnlyFile, OtherThing };
Target LookAtTarget(const std::string& path) noexcept;

/// Gives a file another name in its directory, where nothing has that name, or else instead of what has.
bool MoveToFreeName(const std::string& from, const std::string& to) noexcept;
bool MoveOver(const std::string& from, const std::string& to) noexcept;
bool RemoveFile(const std::string& path) noexcept;

/// A number that no other process has at the same time.
unsigned long ProcessNumber() noexcept;

/// What the last call of this thread failed for, and its text.
int LastFailure() noexcept;
bool NameIsTaken(int failure) noexcept;
std::string FailureText(int failure);

/// How many threads of the process can run at the same time: the processors that it may use, or fewer where the control
/// group that it is in may use less of their time. At least 1.
unsigned int ProcessorCount() noexcept;

/// What can be said of a file by its path. It is not there only where the system says so; a directory that may not be
/// searched, or a loop of links, hides it.
enum class Presence { There, NotThere, Hidden };
Presence LookFor(const std::string& path) noexcept;

/// Whether opening the path waits for nobody, and what is read can be read again.
bool IsRegularFile(const std::string& path) noexcept;

/// What the system says of opening and reading that file, or an empty text where both can be done, or might wait.
std::string WhyUnreadable(const std::string& path);

/// The names in a directory, as far as they can be told; at most some thousands.
std::vector<std::string> FilesIn(const std::string& directory);

/// The path made absolute and freed of "." and "..", without following links. Nothing when the current directory is
/// unknown. Throws std::bad_alloc.
std::optional<std::string> AbsolutePath(const std::string& path);

}  // namespace orvalo::platform
