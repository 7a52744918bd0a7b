#include "Spool.h"

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

#include "IncludedFiles.h"
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

void Copy(std::FILE& from, std::FILE& to) {
    std::vector<char> buffer(1 << 16);
    while (const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), &from)) {
        if (std::fwrite(buffer.data(), 1, count, &to) != count) break;
    }
    if (std::ferror(&from) != 0) throw std::runtime_error("the input cannot be read");
    if (std::fflush(&to) != 0 || std::ferror(&to) != 0) {
        throw std::runtime_error("the input cannot be copied to " + TextOf(fs::temp_directory_path()));
    }
}

}  // namespace

Spool::Spool(const std::string& pipe, const std::string& includedFrom)
    : directory_(MakeDirectory()), includedFrom_(includedFrom) {
    // No file that is included can have a name with a blank.
    path_ = TextOf(directory_ / "standard input");
    try {
        const OpenFile source(pipe.empty() ? stdin : Open(PathOf(pipe), "rb"));
        const OpenFile copy(Open(directory_ / "standard input", "wb"));
        if (!source || !copy) throw std::runtime_error("the input cannot be opened: " + pipe);
        Copy(*source, *copy);
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
