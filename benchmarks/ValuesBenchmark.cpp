#include <array>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <iterator>
#include <string>

#include <benchmark/benchmark.h>
#include <fmt/format.h>
#include <fmt/os.h>
#include <unistd.h>

#include <Orvalo3DReader/Orvalo3DReader.h>

#include "Fastest.h"

// What clients do with the cells of a model, through Records and by hand on the packed bytes. The sum over all fields
// takes the more from a record, the count of materials a single byte.

namespace {

using namespace orvalo;

constexpr std::size_t count = 2'000'000;

Model MakeModel() {
    const std::filesystem::path path =
        std::filesystem::temp_directory_path() / fmt::format("orvalo-values-{}.model", ::getpid());
    std::string text = fmt::format("CUBES count {} format 0 data\n", count);
    const auto rows = [&text](const char* end) {
        for (std::size_t i = 0; i < count; ++i) {
            fmt::format_to(std::back_inserter(text), "{} {} {} {}{}", i % 211, i / 211 % 199, i / 41989, 1 + i % 4,
                           end);
        }
    };
    rows("\n");
    text += fmt::format("END END DAMPING count {} data\n", count);
    rows(" 0.5\n");
    fmt::output_file(path.string()).print("{}END END\n", text);
    ReadOptions options;
    options.cubesOnly = true;
    Model model = ReadModel(path.string(), options);
    std::filesystem::remove(path);
    return model;
}

const Model& TheModel() {
    static const Model model = MakeModel();
    return model;
}

/// The record at `bytes` as a client would copy it.
Cube CubeByHand(const unsigned char* bytes) {
    Cube cube;
    std::memcpy(static_cast<void*>(&cube), bytes, Cubes::recordSize);
    return cube;
}

DampingCube DampingCubeByHand(const unsigned char* bytes) {
    DampingCube cube;
    std::memcpy(static_cast<void*>(&cube), bytes, Cubes::recordSize);
    std::memcpy(&cube.coefficient, bytes + Cubes::recordSize, sizeof cube.coefficient);
    return cube;
}

using Counts = std::array<std::size_t, 256>;

std::int64_t SumByRecords(const Cubes& cubes) {
    std::int64_t sum = 0;
    for (const Cube cube : cubes.Records()) sum += cube.x + 3 * cube.y + 5 * cube.z + 7 * cube.material;
    return sum;
}

std::int64_t SumByHand(const Cubes& cubes) {
    std::int64_t sum = 0;
    for (std::size_t i = 0; i < cubes.CubesCount(); ++i) {
        const Cube cube = CubeByHand(cubes.CubesPtr() + Cubes::recordSize * i);
        sum += cube.x + 3 * cube.y + 5 * cube.z + 7 * cube.material;
    }
    return sum;
}

Counts MaterialsByRecords(const Cubes& cubes) {
    Counts counts{};
    for (const Cube cube : cubes.Records()) ++counts[cube.material];
    return counts;
}

Counts MaterialsByHand(const Cubes& cubes) {
    Counts counts{};
    const unsigned char* material = cubes.CubesPtr() + Cubes::recordSize - 1;
    for (std::size_t i = 0; i < cubes.CubesCount(); ++i, material += Cubes::recordSize) ++counts[*material];
    return counts;
}

double DampingByRecords(const Cubes& cubes) {
    double sum = 0;
    for (const DampingCube cube : cubes.DampingRecords()) sum += cube.x * cube.coefficient + cube.material;
    return sum;
}

double DampingByHand(const Cubes& cubes) {
    double sum = 0;
    for (std::size_t i = 0; i < cubes.DampingCubesCount(); ++i) {
        const DampingCube cube = DampingCubeByHand(cubes.DampingCubesPtr() + Cubes::dampingRecordSize * i);
        sum += cube.x * cube.coefficient + cube.material;
    }
    return sum;
}

template <class Walk>
void Register(const char* name, Walk walk) {
    benchmark::RegisterBenchmark(name,
                                 [walk](benchmark::State& state) {
                                     const Cubes& cubes = TheModel().cubes;
                                     for (auto _ : state) {
                                         auto result = walk(cubes);
                                         benchmark::DoNotOptimize(result);
                                     }
                                     state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(count));
                                 })
        ->Unit(benchmark::kMicrosecond)
        ->ComputeStatistics("min", Fastest);
}

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    Register("sum/records", SumByRecords);
    Register("sum/by_hand", SumByHand);
    Register("materials/records", MaterialsByRecords);
    Register("materials/by_hand", MaterialsByHand);
    Register("damping/records", DampingByRecords);
    Register("damping/by_hand", DampingByHand);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
