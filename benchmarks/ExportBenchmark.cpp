// The tool's export of nine million cubes beside reading them and a plain write of the same bytes, and its diff of
// results beside reading both. Each runs in a process of its own, in turn; told are medians of wall-clock and processor
// time, and the most memory that a process had.

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <Orvalo3DReader/Orvalo3DReader.h>

namespace {

namespace fs = std::filesystem;

constexpr int sizeX = 300;
constexpr int sizeY = 300;
constexpr int sizeZ = 100;
constexpr int resultRows = 800'000;
constexpr int resultColumns = 9;
constexpr int rounds = 7;

struct Cost {
    double wall = 0.0;
    double processor = 0.0;
    double mebibytes = 0.0;
};

/// Writes lines that `line` appends to a text, one for each number below `count`.
void WriteLines(std::ofstream& file, int count, const std::function<void(std::string&, int)>& line) {
    constexpr std::size_t portion = std::size_t{1} << 20U;
    std::string text;
    for (int i = 0; i < count; ++i) {
        line(text, i);
        if (text.size() < portion && i + 1 < count) continue;
        file << text;
        text.clear();
    }
}

void WriteModelFile(const fs::path& path, bool withTemperatures) {
    std::ofstream file(path, std::ios::binary);
    constexpr int count = sizeX * sizeY * sizeZ;
    file << "ANALYSIS cellsize 0.5 timestep 0.1 END\nMATERIALS 1 0 \"a\" 1 2 1 2 0 \"b\" 1 2 1 END\n"
         << fmt::format("CUBES count {} format {} data\n", count, withTemperatures ? 1 : 0);
    WriteLines(file, count, [&](std::string& text, int i) {
        const int y = i / sizeX % sizeY;
        const int z = i / (sizeX * sizeY);
        fmt::format_to(std::back_inserter(text), "{} {} {} {}", i % sizeX + 1, y + 1, z + 1, y / 20 % 2 + 1);
        if (withTemperatures) fmt::format_to(std::back_inserter(text), " {}.{}", 20 + z, y % 10);
        text += '\n';
    });
    file << "END END\nACTUATOR shape point position 1 1 1 input wave table 1 method force END\n"
            "TABLE id 1 count 1 data 0 END END\nSENSOR id 1 shape point position 1 1 1 output U filename \"s\" END\n";
}

void WriteResultsFile(const fs::path& path) {
    std::mt19937_64 random(7);
    std::normal_distribution<double> values(0, 1e-3);
    std::ofstream file(path, std::ios::binary);
    file << "x\ty\tz\tf";
    for (int column = 0; column < resultColumns; ++column) file << "\tv" << column;
    WriteLines(file, resultRows, [&](std::string& text, int i) {
        fmt::format_to(std::back_inserter(text), "\n{}\t{}\t{}\t0", i % 100, i / 100 % 80, i / 8000);
        for (int column = 0; column < resultColumns; ++column) {
            fmt::format_to(std::back_inserter(text), "\t{:.9e}", values(random));
        }
    });
    file << '\n';
}

/// Runs `work` in a process of its own.
Cost Measure(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    const pid_t child = fork();
    if (child == 0) {
        work();
        _exit(0);
    }
    int status = 0;
    rusage usage{};
    wait4(child, &status, 0, &usage);
    if (!WIFEXITED(status) || WEXITSTATUS(status) > 1) std::exit(1);
    const auto seconds = [](const timeval& time) {
        constexpr double micro = 1e-6;
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * micro;
    };
    constexpr double kibibytes = 1024.0;
    return {std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count(),
            seconds(usage.ru_utime) + seconds(usage.ru_stime), static_cast<double>(usage.ru_maxrss) / kibibytes};
}

void Tool(const std::vector<std::string>& arguments) {
    std::vector<char*> words = {const_cast<char*>("orvalo")};
    for (const std::string& argument : arguments) words.push_back(const_cast<char*>(argument.c_str()));
    words.push_back(nullptr);
    const int nowhere = open("/dev/null", O_WRONLY);
    dup2(nowhere, STDOUT_FILENO);
    execv(ORVALO_TOOL, words.data());
    _exit(127);
}

void PlainWrite(const fs::path& like, const fs::path& to) {
    const std::vector<char> bytes(fs::file_size(like), 'x');
    std::FILE* file = std::fopen(to.c_str(), "wb");
    if (file == nullptr || std::fwrite(bytes.data(), 1, bytes.size(), file) != bytes.size()) _exit(2);
    std::fclose(file);
}

/// What `tool` takes beside all of `plain` together.
void Compare(const char* name, const std::function<void()>& tool, const std::vector<std::function<void()>>& plain) {
    std::array<Cost, rounds> tools;
    std::array<Cost, rounds> plains;
    for (int round = 0; round < rounds; ++round) {
        const auto i = static_cast<std::size_t>(round);
        tools[i] = Measure(tool);
        for (const auto& work : plain) {
            const Cost cost = Measure(work);
            plains[i] = {plains[i].wall + cost.wall, plains[i].processor + cost.processor,
                         std::max(plains[i].mebibytes, cost.mebibytes)};
        }
    }
    const auto median = [](std::array<Cost, rounds>& costs, double Cost::*member) {
        std::sort(costs.begin(), costs.end(), [&](const Cost& a, const Cost& b) { return a.*member < b.*member; });
        return costs[rounds / 2].*member;
    };
    const double wall = median(tools, &Cost::wall);
    const double wallPlain = median(plains, &Cost::wall);
    const double processor = median(tools, &Cost::processor);
    const double processorPlain = median(plains, &Cost::processor);
    fmt::print(
        "{:<34} wall {:.3f} s, {:.2f} times {:.3f} s; processor {:.3f} s, {:.2f} times {:.3f} s; {:.0f} MiB, {:.0f}\n",
        name, wall, wall / wallPlain, wallPlain, processor, processor / processorPlain, processorPlain,
        median(tools, &Cost::mebibytes), median(plains, &Cost::mebibytes));
}

}  // namespace

int main() {
    const fs::path directory = fs::temp_directory_path() / fmt::format("orvalo-export-{}", getpid());
    fs::create_directory(directory);
    for (const bool withTemperatures : {false, true}) {
        const fs::path model = directory / "grid.model";
        const fs::path image = directory / "grid.vti";
        WriteModelFile(model, withTemperatures);
        Measure([&] { Tool({"export", model, image, "--force"}); });
        Compare(withTemperatures ? "export .vti, with temperatures" : "export .vti",
                [&] {
                    Tool({"export", model, image, "--force"});
                },
                {[&] { orvalo::ReadModel(model); }, [&] { PlainWrite(image, directory / "plain"); }});
    }
    const fs::path results = directory / "results.txt";
    WriteResultsFile(results);
    fs::copy_file(results, directory / "again.txt");
    const std::function<void()> read = [&] { orvalo::ReadResults(results); };
    Compare("diff of 800,000 rows of 9 columns",
            [&] {
                Tool({"diff", results, directory / "again.txt"});
            },
            {read, read});
    fs::remove_all(directory);
}
