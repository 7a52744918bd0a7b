#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <fmt/format.h>
#include <fmt/os.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <Orvalo3DReader/Orvalo3DReader.h>

#include "Fastest.h"

// ReadModel beside a plain std::from_chars loop over the same bytes, memory-mapped, into the same records. The
// loop takes one separator at a time, checks nothing and knows neither lines nor errors.

namespace {

namespace fs = std::filesystem;

constexpr std::string_view head =
    "ANALYSIS cellsize 1 timestep 0.1 END\n"
    "MATERIALS 1 0 \"steel\" 7.8e-6 5900000 3200000\n"
    "2 0 \"copper\" 8.9e-6 4700000 2260000\n"
    "3 1 \"epoxy\" 1.2e-6 3.5e6 0.35\n"
    "4 0 \"glass\" 2.5e-6 5600000 3400000 END\n";
constexpr std::string_view tail =
    "ACTUATOR shape point position 1 1 1 input definition method force direction W type halfpulse waveform sine\n"
    "envelope none frequency 1 duration 1 phase 0 END\n"
    "DUMP id 1 output all filename \"a.mat\" END\n";

/// A generated model file, and where its bulk rows lie in it.
struct Input {
    fs::path path;
    std::size_t begin = 0;
    std::size_t end = 0;
    std::size_t count = 0;
};

class Files {
public:
    Files() : folder_(fs::temp_directory_path() / fmt::format("orvalo-bench-{}", ::getpid())) {
        fs::create_directories(folder_);
    }
    Files(const Files&) = delete;
    Files& operator=(const Files&) = delete;
    ~Files() { fs::remove_all(folder_); }

    /// Writes `count` rows between a section's opening words and its two ENDs, with all that a model needs around.
    template <class Row>
    Input Write(const char* name, std::string_view opening, std::size_t count, Row row) const {
        Input input{folder_ / name, 0, 0, count};
        std::string text;
        text.reserve(count * 28 + 4096);
        text += head;
        text += opening;
        input.begin = text.size();
        for (std::size_t i = 0; i < count; ++i) row(text, i);
        input.end = text.size();
        text += "END END\n";
        if (opening.substr(0, 5) == "TABLE") text.insert(head.size(), smallGrid), input.begin += smallGrid.size();
        if (opening.substr(0, 5) == "TABLE") input.end += smallGrid.size();
        text += tail;
        auto file = fmt::output_file(input.path.string());
        file.print("{}", text);
        return input;
    }

private:
    static constexpr std::string_view smallGrid = "CUBES count 1 format 0 data\n1 1 1 1\nEND END\n";
    fs::path folder_;
};

/// The bulk rows of a file, mapped for as long as this lives.
class MappedRows {
public:
    explicit MappedRows(const Input& input) {
        const int file = ::open(input.path.c_str(), O_RDONLY);
        if (file < 0) throw std::runtime_error("cannot open " + input.path.string());
        size_ = fs::file_size(input.path);
        data_ = static_cast<char*>(::mmap(nullptr, size_, PROT_READ, MAP_PRIVATE, file, 0));
        ::close(file);
        if (data_ == MAP_FAILED) throw std::runtime_error("cannot map " + input.path.string());
        begin = data_ + input.begin;
        end = data_ + input.end;
    }
    MappedRows(const MappedRows&) = delete;
    MappedRows& operator=(const MappedRows&) = delete;
    ~MappedRows() { ::munmap(data_, size_); }

    const char* begin;
    const char* end;

private:
    char* data_;
    std::size_t size_;
};

template <class T>
const char* Next(const char* p, const char* end, T& value) {
    while (p < end && (*p == ' ' || *p == '\n')) ++p;
    return std::from_chars(p, end, value).ptr;
}

struct FreeBuffer {
    void operator()(void* buffer) const { std::free(buffer); }
};

using Buffer = std::unique_ptr<unsigned char, FreeBuffer>;

Buffer Allocate(std::size_t size) {
    return Buffer(static_cast<unsigned char*>(std::malloc(size)));
}

void LoopCubes(const Input& input, bool withTemperatures) {
    const MappedRows rows(input);
    const Buffer records = Allocate(input.count * orvalo::Cubes::recordSize);
    const Buffer temperatures = Allocate(withTemperatures ? input.count * 8 : 1);
    unsigned char* record = records.get();
    unsigned char* temperature = temperatures.get();
    const char* p = rows.begin;
    for (std::size_t i = 0; i < input.count; ++i) {
        short xyz[3];
        unsigned char material = 0;
        for (short& coordinate : xyz) p = Next(p, rows.end, coordinate);
        p = Next(p, rows.end, material);
        std::memcpy(record, xyz, sizeof xyz);
        record[6] = material;
        record += orvalo::Cubes::recordSize;
        if (!withTemperatures) continue;
        double value = 0.0;
        p = Next(p, rows.end, value);
        std::memcpy(temperature, &value, sizeof value);
        temperature += sizeof value;
    }
    benchmark::DoNotOptimize(records.get());
    benchmark::ClobberMemory();
}

void LoopTable(const Input& input) {
    const MappedRows rows(input);
    const Buffer samples = Allocate(input.count * 8);
    unsigned char* sample = samples.get();
    const char* p = rows.begin;
    for (std::size_t i = 0; i < input.count; ++i) {
        double value = 0.0;
        p = Next(p, rows.end, value);
        std::memcpy(sample, &value, sizeof value);
        sample += sizeof value;
    }
    benchmark::DoNotOptimize(samples.get());
    benchmark::ClobberMemory();
}

void Read(const Input& input, unsigned int threads) {
    orvalo::ReadOptions options;
    options.threads = threads;
    benchmark::DoNotOptimize(orvalo::ReadModel(input.path.string(), options));
}

void CubeRow(std::string& text, std::size_t i) {
    fmt::format_to(std::back_inserter(text), "{} {} {} {}", i % 300 + 1, i / 300 % 300 + 1, i / 90000 + 1,
                   1 + (i * 7 + i / 300) % 4);
}

template <class Body>
void Register(const std::string& name, const Input& input, Body body) {
    benchmark::RegisterBenchmark(
        name.c_str(),
        [input, body](benchmark::State& state) {
            for ([[maybe_unused]] const auto iteration : state) body(input);
            state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(input.end - input.begin));
        })
        ->Unit(benchmark::kMillisecond)
        ->UseRealTime()
        ->ComputeStatistics("min", Fastest);
}

/// By one thread, by two and by as many as there are.
void RegisterReads(const std::string& name, const Input& input) {
    for (const unsigned int threads : {1U, 2U, 0U}) {
        const std::string count = threads == 0 ? "all" : std::to_string(threads);
        Register(name + "/reader/threads:" + count, input, [threads](const Input& file) { Read(file, threads); });
    }
}

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    const Files files;

    const Input cubes = files.Write("cubes.model", "CUBES count 9000000 format 0 data\n", 9'000'000,
                                    [](std::string& text, std::size_t i) {
                                        CubeRow(text, i);
                                        text += '\n';
                                    });
    const Input temperatures = files.Write("temperatures.model", "CUBES count 2000000 format 1 data\n", 2'000'000,
                                           [](std::string& text, std::size_t i) {
                                               CubeRow(text, i);
                                               const double t = 20.0 + static_cast<double>(i % 9973) / 97.0;
                                               fmt::format_to(std::back_inserter(text), " {:.3f}\n", t);
                                           });
    const Input table =
        files.Write("table.model", "TABLE id 1 count 2000000 data\n", 2'000'000, [](std::string& text, std::size_t i) {
            const double t = static_cast<double>(i) * 1e-3;
            fmt::format_to(std::back_inserter(text), "{:.9e}{}", 1e-3 * (t - 900.5) / (t + 1), i % 8 == 7 ? '\n' : ' ');
        });

    RegisterReads("cubes", cubes);
    Register("cubes/from_chars", cubes, [](const Input& input) { LoopCubes(input, false); });
    RegisterReads("temperatures", temperatures);
    Register("temperatures/from_chars", temperatures, [](const Input& input) { LoopCubes(input, true); });
    RegisterReads("table", table);
    Register("table/from_chars", table, LoopTable);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
