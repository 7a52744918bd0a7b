// The library's part in the comparison with other readers of tables, which peers.mjs makes: writes the files, and reads
// them.

#include <chrono>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include <fmt/format.h>

#include <Orvalo3DReader/Orvalo3DReader.h>

#include "GeneratedRows.h"

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr std::size_t cubes = 9'000'000;
constexpr std::size_t resultsRows = 700'000;

template <class Append>
void Write(const fs::path& path, const std::string& head, std::size_t rows, const Append& append,
           const std::string& tail) {
    std::ofstream file(path, std::ios::binary);
    std::string text = head;
    for (std::size_t i = 0; i < rows; ++i) {
        append(text, i);
        if (text.size() < 1'000'000) continue;
        file << text;
        text.clear();
    }
    file << text << tail;
}

/// The same cubes as a model and as bare rows, and results.
void WriteFiles(const fs::path& folder) {
    Write(folder / "cubes.model", fmt::format("CUBES count {} format 0 data\n", cubes), cubes, AppendCube, "END END\n");
    Write(folder / "cubes.csv", "", cubes, AppendCube, "");
    Write(folder / "results.csv", resultsHeader, resultsRows, AppendResultsRow, "");
}

/// Seconds that a read takes; the rows are counted so that it is known to have taken place.
double Seconds(const fs::path& path, unsigned int threads) {
    orvalo::ReadOptions options;
    options.cubesOnly = true;
    options.threads = threads;
    const Clock::time_point start = Clock::now();
    const bool isModel = path.extension() == ".model";
    const std::size_t rows = isModel ? orvalo::ReadModel(path.string(), options).cubes.CubesCount()
                                     : orvalo::ReadResults(path.string(), options)->RowCount();
    const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
    if (rows != (isModel ? cubes : resultsRows)) throw std::runtime_error("rows are missing");
    return seconds;
}

}  // namespace

/// write FOLDER, or read FILE THREADS REPETITIONS, which prints the seconds of each.
int main(int argc, char** argv) {
    const std::string verb = argc > 2 ? argv[1] : "";
    if (verb == "write") {
        WriteFiles(argv[2]);
    } else if (verb == "read" && argc == 5) {
        for (int i = std::atoi(argv[4]); i > 0; --i) {
            fmt::print("{}\n", Seconds(argv[2], static_cast<unsigned int>(std::atoi(argv[3]))));
        }
    } else {
        fmt::print(stderr, "usage: orvalo_peers_benchmark write FOLDER | read FILE THREADS REPETITIONS\n");
        return 2;
    }
}
