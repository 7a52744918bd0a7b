#include "FormatCommand.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <system_error>
#include <vector>

#include <CLI/App.hpp>
#include <CLI/Error.hpp>
#include <fmt/format.h>

#include <Orvalo3DReader/Common/Exception.h>
#include <Orvalo3DReader/Write/WriteModel.h>

#include "CommonOptions.h"
#include "ExitStatus.h"
#include "HarmlessText.h"
#include "PathText.h"

namespace {

namespace fs = std::filesystem;

struct FormatOptions {
    std::string path;
    std::string output;
    std::string cubesFile;
    bool check = false;
    unsigned threads = 0;
};

ExitStatus Refuse(const std::string& path, const std::string& message, ExitStatus status) {
    fmt::print(stderr, "{}: error: {}\n", Harmless(path), Harmless(message));
    return status;
}

// Of a write that fails the model may be the reason, or the place for it.
ExitStatus Write(const orvalo::Model& model, const FormatOptions& options, const std::string& output, bool overwrite) {
    orvalo::WriteOptions writing;
    writing.overwrite = overwrite;
    writing.cubesFile = options.cubesFile;
    try {
        orvalo::WriteModel(model, output, writing);
    } catch (const orvalo::Exception& error) {
        const bool ofFile = error.what().starts_with("Unable to write");
        return Refuse(options.path, error.what(), ofFile ? ExitStatus::unreadableFile : ExitStatus::badFile);
    }
    return ExitStatus::good;
}

/// A directory of its own, removed with all that is in it.
class ScratchDirectory {
public:
    ScratchDirectory() {
        std::random_device random;
        do {
            path_ = fs::temp_directory_path() / fmt::format("orvalo-{:08x}{:08x}", random(), random());
        } while (!fs::create_directory(path_));
        fs::permissions(path_, fs::perms::owner_all);
    }
    ScratchDirectory(const ScratchDirectory&) = delete;
    ScratchDirectory& operator=(const ScratchDirectory&) = delete;
    ~ScratchDirectory() {
        std::error_code ignored;
        fs::remove_all(path_, ignored);
    }

    fs::path File(const std::string& name) const { return path_ / PathOf(name); }

private:
    fs::path path_;
};

bool SameBytes(const fs::path& a, const fs::path& b) {
    std::error_code unknown;
    if (fs::file_size(a, unknown) != fs::file_size(b, unknown) || unknown) return false;
    std::ifstream first(a, std::ios::binary);
    std::ifstream second(b, std::ios::binary);
    return std::equal(std::istreambuf_iterator<char>(first), {}, std::istreambuf_iterator<char>(second), {});
}

void Print(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::vector<char> piece(1U << 16U);
    do {
        file.read(piece.data(), static_cast<std::streamsize>(piece.size()));
        std::fwrite(piece.data(), 1, static_cast<std::size_t>(file.gcount()), stdout);
    } while (file);
}

/// Compares what there is with what would be written.
ExitStatus Compare(const FormatOptions& options, const ScratchDirectory& written, const fs::path& model) {
    ExitStatus status = ExitStatus::good;
    const auto compare = [&](const fs::path& present, const fs::path& tidy) {
        if (SameBytes(present, tidy)) return;
        fmt::print(stderr, "{}: would change\n", Harmless(TextOf(present)));
        status = ExitStatus::badFile;
    };
    compare(PathOf(options.path), model);
    if (!options.cubesFile.empty()) {
        compare(PathOf(options.path).parent_path() / PathOf(options.cubesFile), written.File(options.cubesFile));
    }
    return status;
}

ExitStatus Format(const FormatOptions& options) {
    const InputFile file =
        ReadOrReport(options.path, {std::nullopt, false, false, options.threads}, ColourMode::automatic);
    if (!file.model) {
        return file.Good() ? Refuse(options.path, "These are results, and no model.", ExitStatus::badFile)
                           : file.Status();
    }
    if (!options.output.empty() && !options.check) return Write(*file.model, options, options.output, true);
    const ScratchDirectory scratch;
    const fs::path written = scratch.File(TextOf(PathOf(options.path).filename()));
    const ExitStatus status = Write(*file.model, options, TextOf(written), false);
    if (status != ExitStatus::good) return status;
    if (options.check) return Compare(options, scratch, written);
    Print(written);
    return ExitStatus::good;
}

}  // namespace

void AddFormatCommand(CLI::App& app, ExitStatus& status) {
    auto options = std::make_shared<FormatOptions>();
    CLI::App* command = app.add_subcommand("format", "Print a model in its tidy form");
    command->add_option("MODEL", options->path, "A model file")->required();
    CLI::Option* output = command->add_option(
        "-o,--output", options->output, "Write it to this file, in the place of what is there, instead of printing it");
    command
        ->add_option("--cubes-file", options->cubesFile,
                     "Write CUBES and DAMPING to a file of this name beside the model, which includes it")
        ->type_name("NAME");
    command->add_flag("--check", options->check, "Write nothing, but tell whether the files of MODEL would change")
        ->excludes(output);
    AddThreadsOption(*command, options->threads);
    command->footer(
        "The tidy form has a property on each line, a row on each line of data, the sections in a fixed order and\n"
        "numbers in their shortest form. COMMENTS AND DISABLED SECTIONS ARE NOT KEPT, and what included files hold\n"
        "goes into the one file, or into it and the one of --cubes-file. With --check the exit status is 1 if a file\n"
        "would change.");
    command->callback([options, &status] {
        if (!options->cubesFile.empty() && options->output.empty() && !options->check) {
            throw CLI::ValidationError("--cubes-file", "needs --output or --check");
        }
        status = Format(*options);
    });
}
