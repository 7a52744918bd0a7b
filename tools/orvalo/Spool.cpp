#include "Spool.h"

#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

#include <fmt/format.h>

#if defined(_WIN32)
#include <io.h>
#else
#include <poll.h>
#include <unistd.h>
#endif

#include "IncludedFiles.h"
#include "Interruption.h"
#include "PathText.h"

namespace fs = std::filesystem;

namespace {

struct CloseFile {
    void operator()(std::FILE* file) const {
        if (file != stdin) std::fclose(file);
    }
};
using OpenFile = std::unique_ptr<std::FILE, CloseFile>;

/// On Windows only wide names can hold every letter.
std::FILE* Open(const fs::path& path, const char* mode) {
#if defined(_WIN32)
    return _wfopen(path.c_str(), fs::path(mode).c_str());
#else
    return std::fopen(path.c_str(), mode);
#endif
}

/// A directory that nobody else may look into.
fs::path MakeDirectory() {
    std::random_device random;
    for (int attempt = 0; attempt < 100; ++attempt) {
        fs::path directory = fs::temp_directory_path() / fmt::format("orvalo-{:08x}{:08x}", random(), random());
        if (!fs::create_directory(directory)) continue;
        fs::permissions(directory, fs::perms::owner_all);
        return directory;
    }
    throw std::runtime_error("no temporary directory can be made");
}

/// What comes next, as soon as there is something. Nothing at the end, or once it is interrupted.
std::size_t ReadSome(std::FILE& from, std::vector<char>& buffer, const std::atomic<bool>& interrupted) {
#if defined(_WIN32)
    const int count = interrupted ? 0 : ::_read(::_fileno(&from), buffer.data(), static_cast<unsigned>(buffer.size()));
#else
    // A signal ends a wait, unless it came just before; so none is long.
    pollfd wanted{::fileno(&from), POLLIN, 0};
    int ready = 0;
    while (!interrupted && ready <= 0) {
        ready = ::poll(&wanted, 1, 100);
        if (ready < 0 && errno != EINTR) break;
    }
    const ssize_t count = interrupted ? 0 : ::read(wanted.fd, buffer.data(), buffer.size());
#endif
    if (count < 0) throw std::runtime_error("the input cannot be read");
    return static_cast<std::size_t>(count);
}

void Copy(std::FILE& from, std::FILE& to, const std::atomic<bool>& interrupted) {
    std::vector<char> buffer(1 << 16);
    while (const std::size_t count = ReadSome(from, buffer, interrupted)) {
        if (std::fwrite(buffer.data(), 1, count, &to) != count) break;
    }
    if (std::fflush(&to) != 0 || std::ferror(&to) != 0) {
        throw std::runtime_error("the input cannot be copied to " + TextOf(fs::temp_directory_path()));
    }
}

}  // namespace

Spool::Spool(const std::string& pipe, const std::string& includedFrom) : includedFrom_(includedFrom) {
    // Opened while Ctrl-C still ends the program: nothing is made yet, and nobody may ever write the pipe.
    const OpenFile source(pipe.empty() ? stdin : Open(PathOf(pipe), "rb"));
    if (!source) throw std::runtime_error("the input cannot be opened: " + pipe);
    // What it cuts short is not taken for the whole: the reads that follow look at the flag too.
    const Interruption interruption;
    directory_ = MakeDirectory();
    // No file that is included can have a name with a blank.
    path_ = TextOf(directory_ / "standard input");
    try {
        const OpenFile copy(Open(directory_ / "standard input", "wb"));
        if (!copy) throw std::runtime_error("no temporary file can be made in " + TextOf(directory_));
        Copy(*source, *copy, *interruption.Flag());
        for (const std::string& included : WithIncludedFiles(path_, includedFrom_)) {
            std::error_code ignored;
            if (included == path_) continue;
            const fs::path target = fs::absolute(PathOf(included));
            const fs::path link = directory_ / target.filename();
            fs::create_symlink(target, link, ignored);
            // Not everybody may make links on every system.
            if (ignored) fs::copy_file(target, link, ignored);
        }
    } catch (...) {
        std::error_code ignored;
        fs::remove_all(directory_, ignored);
        throw;
    }
}

Spool::~Spool() {
    std::error_code ignored;
    fs::remove_all(directory_, ignored);
}
