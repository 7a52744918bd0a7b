#pragma once

#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include <Orvalo3DReader/Common/Exception.h>
#include <Orvalo3DReader/Model/Model.h>
#include <Orvalo3DReader/Reader/InputPlace.h>

#include "Reader/ModelReader.h"

/// Model files for the tests of the reader, and what became of reading them.
namespace orvalo::support {

/// A directory of this process's own, removed with all in it at the end. In memory where the system has such a place:
/// the tests read very many small files.
inline const std::string& ScratchDirectory() {
    struct Directory {
        Directory()
            : path((std::filesystem::is_directory("/dev/shm") ? "/dev/shm/" : testing::TempDir()) + "orvalo-XXXXXX") {
            if (::mkdtemp(path.data()) == nullptr) throw std::runtime_error("no temporary directory");
            path = std::filesystem::canonical(path).string();
        }
        ~Directory() {
            std::error_code ignored;
            std::filesystem::remove_all(path, ignored);
        }
        Directory(const Directory&) = delete;
        Directory& operator=(const Directory&) = delete;
        std::string path;
    };
    static const Directory directory;
    return directory.path;
}

/// Writes a file into the scratch directory and returns its path.
inline std::string WriteFile(const std::string& name, std::string_view bytes) {
    const std::string path = ScratchDirectory() + '/' + name;
    std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return path;
}

inline std::string Replaced(std::string text, std::string_view what, std::string_view with) {
    for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += with.size()) {
        text.replace(at, what.size(), with);
    }
    return text;
}

struct ReadOptions {
    bool cubesOnly = false;
    bool doublePrecision = true;
    std::size_t bufferSize = Lexer::defaultBufferSize;
};

/// What a read came to: `code` 0 is success.
struct Outcome {
    int code = 0;
    std::string what;
    std::string file;
    int line = 0;
    InputPlace place;
    std::uint64_t row = 0;
    std::shared_ptr<Model> model = std::make_shared<Model>();
};

inline Outcome ReadPath(const std::string& path, const ReadOptions& options = {}) {
    Outcome outcome;
    ModelReader reader(path, options.cubesOnly, options.bufferSize);
    try {
        reader.Execute(*outcome.model, options.doublePrecision);
    } catch (const Exception& failure) {
        outcome.code = failure.code();
        outcome.what = failure.what();
        outcome.file = failure.file();
        outcome.line = failure.line();
        outcome.place = reader.FailurePlace();
        outcome.row = reader.FailureRow();
    }
    return outcome;
}

/// Reads `text` as the file m.model.
inline Outcome ReadText(std::string_view text, const ReadOptions& options = {}) {
    return ReadPath(WriteFile("m.model", text), options);
}

/// The sections named by one letter each, every one a line that ends with a carriage return and a line feed, so that
/// the line which messages report is the true one: A, M, C as they must begin, X an actuator, S a sensor, P a patch.
inline std::string Sections(std::string_view letters) {
    static const std::map<char, const char*> sections = {
        {'A', "ANALYSIS cellsize 1 timestep 0.1 END"},
        {'M', "MATERIALS 1 0 \"steel\" 7800 5900 3200 END"},
        {'C', "CUBES count 1 format 0 data 1 1 1 1 END END"},
        {'X',
         "ACTUATOR shape point position 1 1 1 input definition method force type fullpulse waveform sine envelope "
         "none frequency 100 duration 10 phase 0 END"},
        {'S', "SENSOR id 1 shape point position 1 1 1 output u filename \"s.txt\" END"},
        {'P', "PIEZO id 1 position 0 0 0 direction 0 0 1 method force count 1 data 0 0 i END END"},
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
    return std::to_string(place.line) + ':' + std::to_string(place.column) + '/' + std::to_string(place.offset);
}

/// A line of a word and of numbers, each in its shortest form that is no other number's.
template <class... Numbers>
std::string Line(std::string word, Numbers... numbers) {
    const auto append = [&word](double number) {
        char shown[32];
        word.append(" ").append(shown, std::to_chars(std::begin(shown), std::end(shown), number).ptr);
    };
    (append(static_cast<double>(numbers)), ...);
    return word + '\n';
}

/// Bounds, cubes and damping cubes, a line for each.
inline std::string ShowGrid(const Model& model) {
    const Bounds& b = model.bounds;
    std::string text = b.defined ? Line("bounds", b.minX, b.maxX, b.minY, b.maxY, b.minZ, b.maxZ) : "";
    for (std::size_t i = 0; i < model.cubes.CubesCount(); ++i) {
        Cube cube;
        std::memcpy(static_cast<void*>(&cube), model.cubes.CubesPtr() + i * 7, 7);
        text += Line("cube", cube.x, cube.y, cube.z, cube.material);
        if (model.cubes.TemperaturesPtr() != nullptr) text += Line("at", model.cubes.GetTemperature(i));
    }
    for (std::size_t i = 0; i < model.cubes.DampingCubesCount(); ++i) {
        DampingCube cube;
        std::memcpy(static_cast<void*>(&cube), model.cubes.DampingCubesPtr() + i * 15, 7);
        std::memcpy(&cube.coefficient, model.cubes.DampingCubesPtr() + i * 15 + 7, sizeof cube.coefficient);
        text += Line("damping", cube.x, cube.y, cube.z, cube.material, cube.coefficient);
    }
    return text;
}

/// Tables, a line for each and for every number in it.
inline std::string ShowTables(const std::map<int, std::shared_ptr<Table>>& tables) {
    std::string text;
    for (const auto& [id, table] : tables) {
        text += Line("table", id, table->id);
        for (std::size_t i = 0; i < table->count; ++i) text += Line("", table->Get(i));
    }
    return text;
}

/// What the bulk sections put into a model.
inline std::string ShowBulk(const Model& model) {
    std::string text = ShowGrid(model) + ShowTables(model.tables);
    for (const auto& [id, set] : model.sets) {
        text += Line("set", id, set->id);
        for (const Point* p = set->points; p != set->points + set->count; ++p) text += Line("", p->x, p->y, p->z);
    }
    return text;
}

/// The same of a read that succeeded, or all that an error says.
inline std::string Fingerprint(const Outcome& outcome) {
    if (outcome.code == 0) return ShowBulk(*outcome.model);
    return outcome.what + " at " + ToText(outcome.place) + " of " + outcome.place.path + " row " +
           std::to_string(outcome.row);
}

}  // namespace orvalo::support
