// Speed over the number of threads, for files of 100 MB and of 1 GB.

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <map>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <fmt/format.h>
#include <unistd.h>

#include <Orvalo3DReader/Orvalo3DReader.h>

#include "GeneratedRows.h"

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr std::size_t megabyte = 1'000'000;

struct Subject {
    const char* name;
    /// Appends row `i`.
    void (*row)(std::string& text, std::size_t i);
    bool isModel;
};

const Subject subjects[] = {{"cubes", AppendCube, true}, {"text results", AppendResultsRow, false}};

/// Writes a file of about `size` bytes.
void Write(const fs::path& path, const Subject& subject, std::size_t size) {
    std::ofstream file(path, std::ios::binary);
    constexpr const char* section = "CUBES format 0 count {:10} data\n";
    file << (subject.isModel ? fmt::format(fmt::runtime(section), 0) : resultsHeader);
    std::string text;
    std::size_t rows = 0;
    for (std::size_t written = 0; written < size; written += text.size()) {
        text.clear();
        while (text.size() < megabyte) subject.row(text, rows++);
        file << text;
    }
    if (subject.isModel) {
        file << "END END\n";
        file.seekp(0);
        file << fmt::format(fmt::runtime(section), rows);
    }
    if (!file.flush()) throw std::runtime_error("cannot write " + path.string());
}

double Seconds(const Subject& subject, const fs::path& path, unsigned int threads) {
    orvalo::ReadOptions options;
    options.cubesOnly = true;
    options.threads = threads;
    const Clock::time_point start = Clock::now();
    if (subject.isModel) orvalo::ReadModel(path.string(), options);
    if (!subject.isModel) orvalo::ReadResults(path.string(), options);
    return std::chrono::duration<double>(Clock::now() - start).count();
}

}  // namespace

int main() {
    const fs::path path = fs::temp_directory_path() / fmt::format("orvalo-scaling-{}", ::getpid());
    std::vector<unsigned int> counts = {1};
    const unsigned int processors = std::max(1U, std::thread::hardware_concurrency());
    while (counts.back() * 2 < processors) counts.push_back(counts.back() * 2);
    if (counts.back() != processors) counts.push_back(processors);

    fmt::print("{:14} {:>8} {:>8} {:>9} {:>9} {:>8}\n", "file", "MB", "threads", "seconds", "MB/s", "speedup");
    for (const Subject& subject : subjects) {
        for (const std::size_t size : {100 * megabyte, 1000 * megabyte}) {
            Write(path, subject, size);
            std::map<unsigned int, double> fastest;
            for (int repetition = 0; repetition < 5; ++repetition) {
                for (const unsigned int threads : counts) {
                    const double seconds = Seconds(subject, path, threads);
                    fastest[threads] = repetition == 0 ? seconds : std::min(fastest[threads], seconds);
                }
            }
            const double megabytes = static_cast<double>(fs::file_size(path)) / static_cast<double>(megabyte);
            for (const auto& [threads, seconds] : fastest) {
                fmt::print("{:14} {:8.0f} {:8} {:9.3f} {:9.0f} {:8.2f}\n", subject.name, megabytes, threads, seconds,
                           megabytes / seconds, fastest[1] / seconds);
            }
        }
    }
    fs::remove(path);
}
