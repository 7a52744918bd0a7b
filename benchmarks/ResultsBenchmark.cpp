// Reading and querying results, each beside the plain code that a program without the library would use.

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <fmt/format.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <Orvalo3DReader/Reader/ReadResults.h>

#include "Fastest.h"

namespace {

constexpr int sizeX = 100;
constexpr int sizeY = 80;
constexpr int sizeZ = 100;
constexpr std::size_t textRows = std::size_t{sizeX} * sizeY * sizeZ;
constexpr std::size_t valueColumns = 9;
constexpr std::size_t matRows = 3'600'000;

std::filesystem::path directory;

std::string TextPath() {
    return directory / "results.txt";
}
std::string MatPath() {
    return directory / "results.mat";
}

struct Cell {
    int x;
    int y;
    int z;
    bool operator==(const Cell&) const = default;
};

Cell CellOf(std::size_t row) {
    const auto number = static_cast<int>(row);
    return {number % sizeX, number / sizeX % sizeY, number / (sizeX * sizeY)};
}

void WriteText() {
    std::mt19937_64 random(7);
    std::normal_distribution<double> values(0, 1e-3);
    std::string text = "x\ty\tz\tf";
    for (std::size_t column = 0; column < valueColumns; ++column) text += fmt::format("\tv{}", column);
    std::ofstream file(TextPath(), std::ios::binary);
    for (std::size_t row = 0; row < textRows; ++row) {
        const Cell cell = CellOf(row);
        text += fmt::format("\n{}\t{}\t{}\t{}", cell.x, cell.y, cell.z, row % 3);
        for (std::size_t column = 0; column < valueColumns; ++column) text += fmt::format("\t{:.9e}", values(random));
        file << text;
        text.clear();
    }
    file << '\n';
}

template <class T>
void WriteMatrix(std::ofstream& file, char name, std::uint32_t type, std::size_t columns, const std::vector<T>& data) {
    const auto size = static_cast<std::uint32_t>(data.size() * sizeof(T));
    const std::uint32_t head[] = {14,
                                  48 + size,
                                  6,
                                  8,
                                  6,
                                  0,
                                  5,
                                  8,
                                  static_cast<std::uint32_t>(data.size() / columns),
                                  static_cast<std::uint32_t>(columns),
                                  1U << 16U | 1U,
                                  static_cast<std::uint32_t>(name),
                                  type,
                                  size};
    file.write(reinterpret_cast<const char*>(head), sizeof head);
    file.write(reinterpret_cast<const char*>(data.data()), size);
}

void WriteMat() {
    std::vector<double> values(matRows * valueColumns);
    for (std::size_t i = 0; i < values.size(); ++i) values[i] = static_cast<double>(i);
    std::vector<short> indices(matRows * 3);
    for (std::size_t row = 0; row < matRows; ++row) {
        indices[row] = static_cast<short>(row % 200);
        indices[row + matRows] = static_cast<short>(row / 200 % 200);
        indices[row + 2 * matRows] = static_cast<short>(row / 40000);
    }
    std::ofstream file(MatPath(), std::ios::binary);
    std::string header = "MATLAB 5.0 MAT-file";
    header.resize(124);
    file << header << std::string("\0\1IM", 4);
    WriteMatrix(file, 'v', 9, valueColumns, values);
    WriteMatrix(file, 'i', 3, 3, indices);
}

std::unique_ptr<orvalo::Results> Load(const std::string& path, unsigned int threads = 1) {
    orvalo::ReadOptions options;
    options.threads = threads;
    return orvalo::ReadResults(path, options);
}

void SetBytes(benchmark::State& state, const std::string& path) {
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(std::filesystem::file_size(path)));
}

/// With one thread, two, and as many as there are processors.
void ByThreads(benchmark::internal::Benchmark* of) {
    of->ArgName("threads")->Arg(1)->Arg(2)->Arg(0)->Unit(benchmark::kMillisecond)->UseRealTime();
    of->ComputeStatistics("min", Fastest);
}

void TextByLibrary(benchmark::State& state) {
    const auto threads = static_cast<unsigned int>(state.range(0));
    for (auto _ : state) benchmark::DoNotOptimize(Load(TextPath(), threads)->RowCount());
    SetBytes(state, TextPath());
}
BENCHMARK(TextByLibrary)->Apply(ByThreads);

/// Takes it for granted that the file is in order, knows its size in advance, and builds no lookup.
void TextByFromChars(benchmark::State& state) {
    for (auto _ : state) {
        const int descriptor = ::open(TextPath().c_str(), O_RDONLY);
        const std::size_t size = std::filesystem::file_size(TextPath());
        void* const mapped = ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE, descriptor, 0);
        ::close(descriptor);
        const char* p = static_cast<const char*>(mapped);
        const char* const end = p + size;
        std::vector<short> indices;
        std::vector<double> values;
        indices.reserve(textRows * 4);
        values.reserve(textRows * valueColumns);
        p = std::find(p, end, '\n') + 1;
        while (p < end) {
            for (int column = 0; column < 4; ++column) {
                short index = 0;
                p = std::from_chars(p, end, index).ptr + 1;
                indices.push_back(index);
            }
            for (std::size_t column = 0; column < valueColumns; ++column) {
                double value = 0;
                p = std::from_chars(p, end, value).ptr + 1;
                values.push_back(value);
            }
        }
        benchmark::DoNotOptimize(values.data());
        benchmark::DoNotOptimize(indices.data());
        ::munmap(mapped, size);
    }
    SetBytes(state, TextPath());
}
BENCHMARK(TextByFromChars)->Unit(benchmark::kMillisecond)->UseRealTime()->ComputeStatistics("min", Fastest);

void MatByLibrary(benchmark::State& state) {
    const auto threads = static_cast<unsigned int>(state.range(0));
    for (auto _ : state) benchmark::DoNotOptimize(Load(MatPath(), threads)->RowCount());
    SetBytes(state, MatPath());
}
BENCHMARK(MatByLibrary)->Apply(ByThreads);

void MatByFread(benchmark::State& state) {
    const std::size_t size = std::filesystem::file_size(MatPath());
    for (auto _ : state) {
        const std::unique_ptr<void, decltype(&std::free)> buffer(std::malloc(size), std::free);
        const std::unique_ptr<std::FILE, decltype(&std::fclose)> file(std::fopen(MatPath().c_str(), "rb"), std::fclose);
        if (std::fread(buffer.get(), 1, size, file.get()) != size) state.SkipWithError("short read");
        benchmark::DoNotOptimize(buffer.get());
    }
    SetBytes(state, MatPath());
}
BENCHMARK(MatByFread)->Unit(benchmark::kMillisecond)->UseRealTime()->ComputeStatistics("min", Fastest);

/// All cells, in the order of the file as a program goes through that draws them, or in no order at all.
std::vector<Cell> Cells(bool shuffled) {
    std::vector<Cell> cells(textRows);
    for (std::size_t row = 0; row < textRows; ++row) cells[row] = CellOf(row);
    if (shuffled) std::shuffle(cells.begin(), cells.end(), std::mt19937_64(11));
    return cells;
}

void InBothOrders(benchmark::internal::Benchmark* lookup) {
    lookup->ArgName("shuffled")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->ComputeStatistics("min", Fastest);
}

void LookupByLibrary(benchmark::State& state) {
    const auto results = Load(TextPath());
    const std::vector<Cell> cells = Cells(state.range(0) != 0);
    for (auto _ : state) {
        double sum = 0;
        for (const Cell& cell : cells) sum += results->ExValueGet(4, cell.x, cell.y, cell.z);
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(cells.size()));
}
BENCHMARK(LookupByLibrary)->Apply(InBothOrders);

struct CellHash {
    std::size_t operator()(const Cell& cell) const {
        std::size_t hash = 0;
        for (const int value : {cell.x, cell.y, cell.z}) {
            hash ^= std::hash<int>()(value) + 0x9E3779B97F4A7C15U + (hash << 6U) + (hash >> 2U);
        }
        return hash;
    }
};

void LookupByMap(benchmark::State& state) {
    const auto results = Load(TextPath());
    std::unordered_map<Cell, std::array<double, valueColumns>, CellHash> values;
    for (unsigned int row = 0; row < results->RowCount(); ++row) {
        auto& stored = values[{results->IndexGet(0, row), results->IndexGet(1, row), results->IndexGet(2, row)}];
        for (unsigned int column = 0; column < valueColumns; ++column) stored[column] = results->ValueGet(column, row);
    }
    const std::vector<Cell> cells = Cells(state.range(0) != 0);
    for (auto _ : state) {
        double sum = 0;
        for (const Cell& cell : cells) sum += values.at(cell)[4];
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(cells.size()));
}
BENCHMARK(LookupByMap)->Apply(InBothOrders);

/// The peak memory in MiB of a process of its own that loads the file.
double PeakMemory(const std::string& path) {
    const pid_t child = ::fork();
    if (child == 0) {
        if (!path.empty()) benchmark::DoNotOptimize(Load(path)->RowCount());
        ::_exit(0);
    }
    rusage usage{};
    int status = 0;
    ::wait4(child, &status, 0, &usage);
    return static_cast<double>(usage.ru_maxrss) / 1024;
}

/// What reading takes beyond the stored data and four bytes for each cell.
std::string MemoryBeyondData(const std::string& path, std::size_t rows, std::size_t indexColumns) {
    const auto stored = static_cast<double>(rows * (valueColumns * sizeof(double) + indexColumns * sizeof(short) + 4));
    return fmt::format("{:.1f} MiB", PeakMemory(path) - PeakMemory("") - stored / (1024 * 1024));
}

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    std::string name = std::filesystem::temp_directory_path() / "orvalo-results-XXXXXX";
    if (::mkdtemp(name.data()) == nullptr) return 1;
    directory = name;
    if (::fork() == 0) {  // What writing takes is not to count as memory of the reader.
        WriteText();
        WriteMat();
        ::_exit(0);
    }
    ::wait(nullptr);
    benchmark::AddCustomContext("text, peak memory beyond the data", MemoryBeyondData(TextPath(), textRows, 4));
    benchmark::AddCustomContext("MAT, peak memory beyond the data", MemoryBeyondData(MatPath(), matRows, 3));
    benchmark::RunSpecifiedBenchmarks();
    std::filesystem::remove_all(directory);
    return 0;
}
