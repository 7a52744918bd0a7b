#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <fmt/format.h>
#include <unistd.h>

#include <Orvalo3DReader/Orvalo3DReader.h>

#include "Fastest.h"

// The writers beside plain loops that put the same numbers into the same file: std::to_chars and fmt::format_to into a
// buffer that is written whenever it is full, and fwrite of the very bytes. The loops check nothing. All of them have
// the bytes reach the medium before they close the file.

namespace {

namespace fs = std::filesystem;

constexpr std::size_t cubeCount = 9'000'000;
constexpr std::size_t textRows = 800'000;
constexpr std::size_t textValues = 9;
constexpr std::size_t matRows = 3'512'500;  // 281 MB with nine values and four indices

/// A directory of its own; in memory, unless TMPDIR says otherwise, since the medium is the same for all.
class Folder {
public:
    Folder() {
        const bool inMemory = std::getenv("TMPDIR") == nullptr && fs::is_directory("/dev/shm");
        path_ =
            (inMemory ? fs::path("/dev/shm") : fs::temp_directory_path()) / fmt::format("orvalo-bench-{}", ::getpid());
        fs::create_directories(path_);
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    ~Folder() { fs::remove_all(path_); }

    std::string File(const char* name) const { return (path_ / name).string(); }

private:
    fs::path path_;
};

/// A file as C programs write one.
class PlainFile {
public:
    explicit PlainFile(const std::string& path) : file_(std::fopen(path.c_str(), "wb")) {
        if (file_ == nullptr) throw std::runtime_error("cannot write " + path);
        std::setvbuf(file_, nullptr, _IONBF, 0);
    }
    PlainFile(const PlainFile&) = delete;
    PlainFile& operator=(const PlainFile&) = delete;
    ~PlainFile() {
        ::fsync(::fileno(file_));
        std::fclose(file_);
    }
    void Write(const void* data, std::size_t size) { std::fwrite(data, 1, size, file_); }

private:
    std::FILE* file_;
};

/// Has `row(p, i)` put the text of each row at p, a MiB at a time.
template <class Row>
void WriteRows(const std::string& path, std::size_t rows, Row row) {
    constexpr std::size_t size = std::size_t{1} << 20U;
    constexpr std::size_t longest = 4096;
    const std::unique_ptr<char[]> buffer(new char[size + longest]);
    PlainFile file(path);
    char* p = buffer.get();
    for (std::size_t i = 0; i < rows; ++i) {
        p = row(p, i);
        if (p < buffer.get() + size) continue;
        file.Write(buffer.get(), static_cast<std::size_t>(p - buffer.get()));
        p = buffer.get();
    }
    file.Write(buffer.get(), static_cast<std::size_t>(p - buffer.get()));
}

struct ToChars {
    template <class Number>
    static char* Put(char* p, Number number, char separator) {
        p = std::to_chars(p, p + 32, number).ptr;
        *p++ = separator;
        return p;
    }
};

struct FormatTo {
    template <class Number>
    static char* Put(char* p, Number number, char separator) {
        return fmt::format_to(p, "{}{}", number, separator);
    }
};

orvalo::Model MakeModel(const Folder& folder) {
    const std::string path = folder.File("source.model");
    {
        const auto file = std::unique_ptr<std::FILE, int (*)(std::FILE*)>(std::fopen(path.c_str(), "wb"), std::fclose);
        fmt::print(file.get(),
                   "ANALYSIS cellsize 1 timestep 0.1 END\n"
                   "MATERIALS 1 0 \"steel\" 7.8e-6 5900000 3200000 2 0 \"copper\" 8.9e-6 4700000 2260000\n"
                   "3 0 \"lead\" 1.1e-5 2200000 700000 4 0 \"glass\" 2.5e-6 5600000 3400000 END\n"
                   "CUBES count {} format 0 data\n",
                   cubeCount);
        for (std::size_t i = 0; i < cubeCount; ++i) {
            fmt::print(file.get(), "{} {} {} {}\n", i % 300 + 1, i / 300 % 300 + 1, i / 90000 + 1, 1 + i / 900 % 4);
        }
        fmt::print(file.get(),
                   "END END\n"
                   "ACTUATOR shape point position 1 1 1 input definition method force direction W type halfpulse "
                   "waveform sine envelope none frequency 1 duration 1 phase 0 END\n"
                   "DUMP id 1 output all filename \"a.mat\" END\n");
    }
    orvalo::Model model = orvalo::ReadModel(path);
    fs::remove(path);
    return model;
}

/// Results in memory, as a solver holds them: an array for each column.
struct Columns {
    explicit Columns(std::size_t rows) {
        for (auto& column : indices) column.resize(rows);
        for (auto& column : values) column.resize(rows);
        for (std::size_t i = 0; i < rows; ++i) {
            indices[0][i] = static_cast<short>(i % 200 + 1);
            indices[1][i] = static_cast<short>(i / 200 % 200 + 1);
            indices[2][i] = static_cast<short>(i / 40000 + 1);
            const double t = static_cast<double>(i);
            for (std::size_t c = 0; c < textValues; ++c) {
                values[c][i] = std::sin(t * 0.37 + static_cast<double>(c)) * std::exp(-t * 1e-6) * 1e-3;
            }
        }
        view.rows = rows;
        for (const auto& column : indices) view.indices.emplace_back(column.data());
        for (const auto& column : values) view.values.emplace_back(column.data());
    }

    std::vector<short> indices[4];
    std::vector<double> values[textValues];
    orvalo::ResultsView view;
};

template <class Put>
void LoopCubes(const orvalo::Model& model, const std::string& path) {
    const auto records = model.cubes.Records();
    WriteRows(path, records.size(), [&](char* p, std::size_t i) {
        const orvalo::Cube cube = records[i];
        p = Put::Put(p, cube.x, ' ');
        p = Put::Put(p, cube.y, ' ');
        p = Put::Put(p, cube.z, ' ');
        return Put::Put(p, model.materials.Vec2File(cube.material), '\n');
    });
}

template <class Put>
void LoopText(const Columns& columns, const std::string& path) {
    WriteRows(path, textRows, [&](char* p, std::size_t i) {
        for (const auto& column : columns.indices) p = Put::Put(p, static_cast<std::uint16_t>(column[i]), '\t');
        for (const auto& column : columns.values) p = Put::Put(p, column[i], '\t');
        p[-1] = '\n';
        return p;
    });
}

/// As many bytes as the file had that the writer made, from a buffer.
void WriteAsManyBytes(std::size_t size, const std::string& path) {
    const std::vector<char> buffer(std::size_t{1} << 20U, '1');
    PlainFile file(path);
    for (std::size_t left = size; left > 0; left -= std::min(left, buffer.size())) {
        file.Write(buffer.data(), std::min(left, buffer.size()));
    }
}

void WriteBytes(const Columns& columns, const std::string& path) {
    PlainFile file(path);
    const char header[128] = {};
    file.Write(header, sizeof header);
    for (const auto& column : columns.values) file.Write(column.data(), column.size() * sizeof(double));
    for (const auto& column : columns.indices) file.Write(column.data(), column.size() * sizeof(short));
}

template <class Body>
void Register(const char* name, const std::string& path, Body body) {
    benchmark::RegisterBenchmark(name,
                                 [path, body](benchmark::State& state) {
                                     for ([[maybe_unused]] const auto iteration : state) {
                                         body(path);
                                         state.PauseTiming();
                                         state.counters["MB"] = static_cast<double>(fs::file_size(path)) / 1e6;
                                         fs::remove(path);
                                         state.ResumeTiming();
                                     }
                                 })
        ->Unit(benchmark::kMillisecond)
        ->UseRealTime()
        ->ComputeStatistics("min", Fastest);
}

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    const Folder folder;
    const orvalo::Model model = MakeModel(folder);
    const Columns text(textRows);
    const Columns mat(matRows);

    Register("cubes/writer", folder.File("cubes"), [&](const std::string& path) { orvalo::WriteModel(model, path); });
    Register("cubes/to_chars", folder.File("cubes"), [&](const std::string& path) { LoopCubes<ToChars>(model, path); });
    Register("cubes/format_to", folder.File("cubes"),
             [&](const std::string& path) { LoopCubes<FormatTo>(model, path); });
    orvalo::WriteModel(model, folder.File("sized"));
    const std::size_t cubesSize = fs::file_size(folder.File("sized"));
    fs::remove(folder.File("sized"));
    orvalo::WriteResultsTxt(text.view, folder.File("sized"));
    const std::size_t textSize = fs::file_size(folder.File("sized"));
    fs::remove(folder.File("sized"));
    Register("cubes/fwrite", folder.File("cubes"), [=](const std::string& path) { WriteAsManyBytes(cubesSize, path); });
    Register("text/fwrite", folder.File("text"), [=](const std::string& path) { WriteAsManyBytes(textSize, path); });
    Register("text/writer", folder.File("text"),
             [&](const std::string& path) { orvalo::WriteResultsTxt(text.view, path); });
    Register("text/to_chars", folder.File("text"), [&](const std::string& path) { LoopText<ToChars>(text, path); });
    Register("text/format_to", folder.File("text"), [&](const std::string& path) { LoopText<FormatTo>(text, path); });
    Register("mat/writer", folder.File("mat"),
             [&](const std::string& path) { orvalo::WriteResultsMat(mat.view, path); });
    Register("mat/fwrite", folder.File("mat"), [&](const std::string& path) { WriteBytes(mat, path); });
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
