#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <Orvalo3DReader/Orvalo3DReader.h>

// CheckModel beside Reader::Execute on models of nine million cubes: time, and the most memory that a process of its
// own had for each. Reads and checks alternate; told are the medians.

namespace {

namespace fs = std::filesystem;
using namespace orvalo;

constexpr std::uint32_t cubes = 9'000'000;
constexpr int rounds = 7;

using Cell = std::array<std::uint32_t, 3>;

struct Shape {
    const char* name;
    /// The cell of a row, from 0.
    std::function<Cell(std::uint32_t row)> cell;
};

/// The place of a row in an order that is none; every row has one of its own.
std::uint32_t Shuffled(std::uint32_t row) {
    return static_cast<std::uint32_t>(std::uint64_t{row} * 5'800'079 % cubes);
}

Cell InBox(std::uint32_t i) {
    return {i % 300, i / 300 % 200, i / 60'000};
}

/// A cell somewhere in the largest box that there is. The multiplier is odd, so that no two are the same.
Cell Anywhere(std::uint32_t i) {
    const std::uint64_t bits = (i * 0x9E3779B97F4A7C15U) >> 19U;
    return {static_cast<std::uint32_t>(bits & 0x7FFFU), static_cast<std::uint32_t>(bits >> 15U & 0x7FFFU),
            static_cast<std::uint32_t>(bits >> 30U & 0x7FFFU)};
}

const Shape shapes[] = {
    {"every cell of a box", InBox},
    {"every cell, in no order", [](std::uint32_t row) { return InBox(Shuffled(row)); }},
    {"spread in order",
     [](std::uint32_t row) -> Cell {
         return {row % 300 * 109, row / 300 % 200 * 163, row / 60'000 * 218};
     }},
    {"spread in no order", Anywhere},
};

void Write(const fs::path& path, const Shape& shape) {
    std::ofstream file(path, std::ios::binary);
    file << "ANALYSIS cellsize 1e-3 timestep 0.1 END\n"
            "MATERIALS 1 0 \"steel\" 7850 5920 3230\n2 0 \"copper\" 8900 4700 2260 END\n"
         << "CUBES count " << cubes << " format 0 data\n";
    std::string text;
    for (std::uint32_t row = 0; row < cubes; ++row) {
        const Cell cell = shape.cell(row);
        fmt::format_to(std::back_inserter(text), "{} {} {} {}\n", cell[0], cell[1], cell[2], row % 2 + 1);
        if (text.size() > 1U << 20U || row + 1 == cubes) {
            file << text;
            text.clear();
        }
    }
    const Cell first = shape.cell(0);
    file << fmt::format(
        "END END\nACTUATOR shape point position {} {} {} input definition method force direction W type halfpulse\n"
        "waveform sine envelope none frequency 1 duration 500 phase 0 END\n"
        "DUMP id 1 output all filename \"a.mat\" END\n",
        first[0], first[1], first[2]);
}

struct Cost {
    double seconds = 0;
    double mebibytes = 0;
};

/// What `work` takes in a process of its own.
Cost CostOf(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    const pid_t child = ::fork();
    if (child == 0) {
        work();
        std::_Exit(0);
    }
    int status = 0;
    rusage usage{};
    if (child < 0 || ::wait4(child, &status, 0, &usage) != child || status != 0) std::abort();
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
    return {elapsed.count(), static_cast<double>(usage.ru_maxrss) / 1024};
}

Cost Median(std::vector<Cost> costs) {
    const auto middle = costs.begin() + static_cast<std::ptrdiff_t>(costs.size() / 2);
    Cost median;
    std::nth_element(costs.begin(), middle, costs.end(),
                     [](const Cost& a, const Cost& b) { return a.mebibytes < b.mebibytes; });
    median.mebibytes = middle->mebibytes;
    std::nth_element(costs.begin(), middle, costs.end(),
                     [](const Cost& a, const Cost& b) { return a.seconds < b.seconds; });
    median.seconds = middle->seconds;
    return median;
}

}  // namespace

int main() {
    const fs::path path = fs::temp_directory_path() / fmt::format("orvalo-check-{}", ::getpid());
    fmt::print("{:26} {:>9} {:>9} {:>7} {:>10} {:>9}\n", "9,000,000 cubes", "read ms", "check ms", "times", "read MiB",
               "more MiB");
    for (const Shape& shape : shapes) {
        Write(path, shape);
        std::vector<Cost> reads;
        std::vector<Cost> checks;
        for (int round = 0; round <= rounds; ++round) {
            const Cost read = CostOf([&] { ReadModel(path.string()); });
            const Cost check = CostOf([&] {
                for (const Diagnostic& d : CheckModel(path.string())) fmt::print("{} {}\n", d.rule, d.message);
                std::fflush(stdout);
            });
            // The first round finds the file in no cache.
            if (round == 0) continue;
            reads.push_back(read);
            checks.push_back(check);
        }
        const Cost read = Median(reads);
        const Cost check = Median(checks);
        fmt::print("{:26} {:9.0f} {:9.0f} {:7.2f} {:10.1f} {:9.1f}\n", shape.name, read.seconds * 1e3,
                   check.seconds * 1e3, check.seconds / read.seconds, read.mebibytes, check.mebibytes - read.mebibytes);
        std::fflush(stdout);
    }
    fs::remove(path);
}
