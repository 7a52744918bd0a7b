#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include <fmt/format.h>
#include <unistd.h>

#include <Orvalo3DReader/Orvalo3DReader.h>

// How long a read goes on after its flag was raised, at many moments of reads that take long. That includes the release
// of what was read so far, a tenth of a millisecond for each MiB where its pages are small.

namespace {

namespace fs = std::filesystem;
using namespace orvalo;
using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

struct Subject {
    const char* name;
    enum Kind { CubesOnly, WholeModel, ResultsFile } kind;
    std::function<void(std::ofstream&)> write;
};

constexpr const char* head =
    "ANALYSIS cellsize 1 timestep 1e-5 END MATERIALS 1 0 \"s\" 1 1 1 END CUBES count 1 format 0 data 1 1 1 1 END END\n";

void Repeat(std::ofstream& file, const std::string& part, std::size_t size) {
    std::string block;
    while (block.size() < 1U << 20U) block += part;
    for (std::size_t written = 0; written < size; written += block.size()) file << block;
}

template <class T, class Value>
void WriteMatrix(std::ofstream& file, char name, std::uint32_t type, std::uint32_t rows, std::uint32_t columns,
                 Value value) {
    const auto size = static_cast<std::uint32_t>(std::size_t{rows} * columns * sizeof(T));
    const std::uint32_t words[] = {
        14, 48 + size, 6, 8, 6, 0, 5, 8, rows, columns, 1U << 16U | 1U, static_cast<std::uint32_t>(name), type, size};
    file.write(reinterpret_cast<const char*>(words), sizeof words);
    std::vector<T> column(rows);
    for (std::uint32_t c = 0; c < columns; ++c) {
        for (std::uint32_t row = 0; row < rows; ++row) column[row] = value(c, row);
        file.write(reinterpret_cast<const char*>(column.data()), static_cast<std::streamsize>(rows * sizeof(T)));
    }
}

/// A MAT-file whose rows lie `spread` cells apart.
void WriteMat(std::ofstream& file, std::uint32_t rows, std::uint32_t columns, std::uint32_t spread) {
    std::string header = "MATLAB 5.0 MAT-file";
    header.resize(124);
    file << header << std::string("\0\1IM", 4);
    WriteMatrix<double>(file, 'v', 9, rows, columns, [](auto, auto row) { return static_cast<double>(row); });
    WriteMatrix<short>(file, 'i', 3, rows, 3, [spread](std::uint32_t axis, std::uint32_t row) {
        const std::uint32_t cell = row * spread;
        return static_cast<short>(axis == 0 ? cell % 1000 : axis == 1 ? cell / 1000 % 1000 : cell / 1'000'000);
    });
}

const std::vector<Subject>& Subjects() {
    constexpr std::size_t large = std::size_t{200} << 20U;
    static const std::vector<Subject> subjects = {
        {"cubes", Subject::CubesOnly,
         [](std::ofstream& file) {
             file << "CUBES count 100000000 format 0 data\n";
             Repeat(file, "1 22 333 1\n", large);
         }},
        {"table", Subject::WholeModel,
         [](std::ofstream& file) {
             file << head << "TABLE id 1 count 100000000 data\n";
             Repeat(file, "0.12345678901234567 ", large);
         }},
        {"small sections", Subject::WholeModel,
         [](std::ofstream& file) {
             file << head;
             Repeat(file, "ACTUATOR enabled 0 END\n", large);
         }},
        {"grids that are replaced", Subject::CubesOnly,
         [](std::ofstream& file) {
             file << "CUBES count 100000000 format 1\n";
             Repeat(file, "data 1 1 1 1 1 END\n", large / 100);
         }},
        {"generated table", Subject::WholeModel,
         [](std::ofstream& file) {
             file << head
                  << "ACTUATOR shape point position 1 1 1 input definition method force type continuouswave "
                     "waveform sine envelope hannwindow frequency 1 duration 600 phase 0 END\n"
                     "DUMP id 1 output all filename \"a\" END\n";
         }},
        {"text", Subject::ResultsFile,
         [](std::ofstream& file) {
             file << "x\ty\tz\tf\tu\tv\n";
             Repeat(file, "1\t2\t3\t0\t0.123456789\t-1e-3\n", large);
         }},
        {"MAT-file", Subject::ResultsFile, [](std::ofstream& file) { WriteMat(file, 8'000'000, 9, 1); }},
        {"MAT-file with spread rows", Subject::ResultsFile,
         [](std::ofstream& file) { WriteMat(file, 1'000'000, 1, 2001); }},
    };
    return subjects;
}

/// How long the read goes on after the flag is raised `after` its start; negative when it ended before.
double Delay(const Subject& subject, const std::string& path, Milliseconds after) {
    std::atomic<bool> stop{false};
    ReadOptions options;
    options.stop = &stop;
    options.cubesOnly = subject.kind == Subject::CubesOnly;
    Clock::time_point raised;
    std::thread raiser([&] {
        std::this_thread::sleep_for(after);
        raised = Clock::now();
        stop = true;
    });
    bool stopped = false;
    try {
        if (subject.kind == Subject::ResultsFile) {
            ReadResults(path, options);
        } else {
            ReadModel(path, options);
        }
    } catch (const Stopped&) {
        stopped = true;
    } catch (const Exception& failure) {
        // The sections and rows end with the file, so the read does.
    }
    const Clock::time_point ended = Clock::now();
    raiser.join();
    return stopped ? Milliseconds(ended - raised).count() : -1;
}

}  // namespace

int main() {
    const fs::path path = fs::temp_directory_path() / fmt::format("orvalo-stop-{}", ::getpid());
    fmt::print("{:28} {:>7} {:>12} {:>12}\n", "read", "stopped", "median ms", "longest ms");
    for (const Subject& subject : Subjects()) {
        {
            std::ofstream file(path, std::ios::binary);
            subject.write(file);
        }
        std::vector<double> delays;
        // From a millisecond on, later and later, until the read is over first.
        for (double after = 1;; after *= 1.25) {
            const double delay = Delay(subject, path.string(), Milliseconds(after));
            if (delay < 0) break;
            delays.push_back(delay);
        }
        std::sort(delays.begin(), delays.end());
        if (delays.empty()) delays.push_back(0);
        fmt::print("{:28} {:7} {:12.2f} {:12.2f}\n", subject.name, delays.size(), delays[delays.size() / 2],
                   delays.back());
    }
    fs::remove(path);
}
