#pragma once

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <Orvalo3DReader/Common/Exception.h>
#include <Orvalo3DReader/Model/Model.h>
#include <Orvalo3DReader/Reader/ReadError.h>

#include "Reader/ModelReader.h"
#include "Support/ModelText.h"

/// Model files for the tests of the reader, and what became of reading them.
namespace orvalo::support {

/// A directory of this process's own, removed with all in it at the end. In memory where the system has such a place
/// and TMPDIR names no other: the tests read very many small files.
inline const std::string& ScratchDirectory() {
    const auto remove = [](std::string* path) {
        std::error_code ignored;
        std::filesystem::remove_all(*path, ignored);
        delete path;
    };
    static const std::unique_ptr<std::string, decltype(remove)> directory(new std::string, remove);
    if (directory->empty()) {
        const bool inMemory = std::getenv("TMPDIR") == nullptr && std::filesystem::is_directory("/dev/shm");
        const std::filesystem::path parent = inMemory ? "/dev/shm" : std::filesystem::temp_directory_path();
        std::filesystem::path path;
        for (std::random_device random; path.empty() || !std::filesystem::create_directory(path);) {
            path = parent / ("orvalo-" + std::to_string(random()));
        }
        *directory = std::filesystem::canonical(path).generic_string();
    }
    return *directory;
}

/// Writes a file into the scratch directory and returns its path.
inline std::string WriteFile(const std::string& name, std::string_view bytes) {
    const std::string path = ScratchDirectory() + '/' + name;
    const std::filesystem::path inUtf8(std::u8string(path.begin(), path.end()));
    std::ofstream(inUtf8, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return path;
}

inline std::string Replaced(std::string text, std::string_view what, std::string_view with) {
    for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += with.size()) {
        text.replace(at, what.size(), with);
    }
    return text;
}

/// A text that may name paths, with the separator of directories that all systems know.
inline std::string WithSlashes(std::string text) {
#if defined(_WIN32)
    text = Replaced(std::move(text), "\\", "/");
#endif
    return text;
}

inline std::vector<std::string> Split(const std::string& text, std::string_view separator) {
    std::vector<std::string> parts;
    std::size_t start = 0;
    for (std::size_t end; (end = text.find(separator, start)) != std::string::npos; start = end + separator.size()) {
        parts.push_back(text.substr(start, end - start));
    }
    parts.push_back(text.substr(start));
    return parts;
}

/// A table written as text, a row on a line, which goes on with the next one where that begins with blanks. Bars stand
/// between the fields, `/` for a line feed and `\` for a carriage return with one. Lines with // are comments.
inline std::vector<std::vector<std::string>> Rows(const std::string& table) {
    std::vector<std::vector<std::string>> rows;
    std::string text;
    for (const std::string& line : Split(table, "\n")) text += line.starts_with("//") ? "" : '\n' + line;
    for (const std::string& line : Split(Replaced(text, "\n  ", " "), "\n")) {
        if (!line.empty()) rows.push_back(Split(Replaced(Replaced(line, "/", "\n"), "\\", "\r\n"), " | "));
    }
    return rows;
}

/// How many threads read where a test does not say: as many as the environment asks for, usually 1.
inline unsigned int TestThreads() {
    const char* const asked = std::getenv("ORVALO_TEST_THREADS");
    return asked == nullptr ? 1 : static_cast<unsigned int>(std::atoi(asked));
}

struct ReadSettings {
    bool cubesOnly = false;
    bool doublePrecision = true;
    /// Several threads need small buffers to share small files.
    std::size_t bufferSize = TestThreads() == 1 ? Lexer::defaultBufferSize : 64;
    unsigned int threads = TestThreads();
};

/// What a read came to: `code` 0 is success.
struct Outcome {
    int code = 0;
    std::string what;
    std::string file;
    int line = 0;
    InputPlace place;
    std::uint64_t row = 0;
    /// What was told of progress.
    unsigned long long cubes = 0;
    std::shared_ptr<Model> model = std::make_shared<Model>();
};

/// What is called for every whole model that tests read without an error, if anything.
inline void (*afterReadingModel)(const Model& model, bool doublePrecision) = nullptr;

inline Outcome ReadPath(const std::string& path, const ReadSettings& options = {}) {
    Outcome outcome;
    ModelReader reader(path, options.cubesOnly, options.bufferSize);
    reader.Threads(options.threads);
    reader.TraceCurrentCube(&outcome.cubes);
    try {
        reader.Execute(*outcome.model, options.doublePrecision);
    } catch (const ReadError& failure) {
        outcome.code = failure.code();
        outcome.what = WithSlashes(failure.what());
        outcome.file = failure.file();
        outcome.line = failure.line();
        outcome.place = failure.Place();
        outcome.place.path = WithSlashes(outcome.place.path);
        outcome.row = failure.Row();
    }
    const bool whole = outcome.code == 0 && !options.cubesOnly;
    if (whole && afterReadingModel != nullptr) afterReadingModel(*outcome.model, options.doublePrecision);
    return outcome;
}

/// Reads `text` as the file m.model.
inline Outcome ReadText(std::string_view text, const ReadSettings& options = {}) {
    return ReadPath(WriteFile("m.model", text), options);
}

/// The sections named by one letter each, every one a line that ends with a carriage return and a line feed, so that
/// the line which messages report is the true one: A, M, C as they must begin, X and W an actuator by definition and by
/// wave, P a patch, S a sensor, D a dump, G damping, T a table, E a set.
inline std::string Sections(std::string_view letters) {
    static const std::map<char, const char*> sections = {
        {'A', "ANALYSIS cellsize 1 timestep 0.1 END"},
        {'M', "MATERIALS 1 0 \"steel\" 7800 5900 3200 END"},
        {'C', "CUBES count 1 format 0 data 1 1 1 1 END END"},
        {'X',
         "ACTUATOR shape point position 1 1 1 input definition method force type fullpulse waveform sine envelope "
         "none frequency 100 duration 0.04 phase 0 END"},
        {'W', "ACTUATOR shape point position 1 1 1 input wave method force table 1 END"},
        {'S', "SENSOR id 1 shape point position 1 1 1 output u filename \"s.txt\" END"},
        {'P', "PIEZO id 1 position 0 0 0 direction 0 0 1 method force count 1 data 0 0 i END END"},
        {'D', "DUMP id 1 output all filename \"d.mat\" END"},
        {'G', "DAMPING count 1 data 1 1 1 1 0.5 END END"},
        {'T', "TABLE id 1 count 2 data 1 2 END END"},
        {'E', "SET id 1 count 1 data 1 1 1 END END"},
    };
    std::string text;
    for (const char letter : letters) text += std::string(sections.at(letter)) + "\r\n";
    return text;
}

/// A text with its marks taken out: `@` stands before the byte at which reading must stop, `^` where the message says
/// that it did, by default at the same byte; `~` is an `@` that is reported one column late. None of them can occur in
/// a model file outside of comments.
struct MarkedText {
    explicit MarkedText(std::string_view marked) {
        std::uint64_t line = 1;
        std::uint64_t column = 1;
        std::optional<InputPlace> early;
        for (const char c : marked) {
            if (c == '@' || c == '~') {
                truth = reported = {{}, text.size(), line, column};
                if (c == '~') ++reported.column;
            } else if (c == '^') {
                early = InputPlace{{}, text.size(), line, column};
            } else {
                text += c;
                ++column;
                if (c == '\n') {
                    ++line;
                    column = 1;
                }
            }
        }
        if (early) reported = *early;
    }

    std::string text;
    InputPlace truth;
    InputPlace reported;
};

inline std::string LocatedMessage(const std::string& file, const InputPlace& reported, const std::string& message) {
    return "Error in file \"" + file + "\", line " + std::to_string(reported.line) + ", column " +
           std::to_string(reported.column) + ":\n" + message;
}

inline std::string ToText(const InputPlace& place) {
    return std::to_string(place.line) + ':' + std::to_string(place.column) + '+' + std::to_string(place.offset);
}

/// All that came of a read: what the error says, if there is one, and what the bulk sections put into the model.
inline std::string Fingerprint(const Outcome& outcome) {
    if (outcome.code == 0) return ShowBulk(*outcome.model);
    return outcome.what + " at " + ToText(outcome.place) + " of " + outcome.place.path + " row " +
           std::to_string(outcome.row) + " after " + ShowGrid(*outcome.model);
}

}  // namespace orvalo::support
