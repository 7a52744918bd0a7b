#include "InputFile.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>

#include <Orvalo3DReader/Common/Exception.h>
#include <Orvalo3DReader/Common/ReaderMessages.h>
#include <Orvalo3DReader/Reader/ReadModel.h>
#include <Orvalo3DReader/Reader/ReadResults.h>

#include "DeclaredCubes.h"
#include "FileKind.h"
#include "Problem.h"
#include "ProgressBar.h"
#include "TemperatureWarnings.h"
#include "Terminal.h"

namespace {

using orvalo::ReaderMessages;

// The library names file, line and column in a first line of its own, which the true place replaces.
std::string WithoutPlace(const std::string& what) {
    if (!what.starts_with("Error in file \"")) return what;
    const std::size_t end = what.find(":\n", what.rfind("\", line "));
    return end == std::string::npos ? what : what.substr(end + 2);
}

bool CanBeRead(const std::string& path) {
    std::error_code unknown;
    if (std::filesystem::is_fifo(path, unknown)) return true;  // It was read already, and would be waited for.
    std::ifstream file(path, std::ios::binary);
    file.peek();
    return file.is_open() && !file.bad();
}

// Results that end too early are reported by the same message as a disk that fails, so the file is asked again.
ExitStatus StatusOf(int code, const std::string& path) {
    if (code == ReaderMessages::ErrorOpeningInputFile.code || code == ReaderMessages::ErrorReadingInputFile.code ||
        code == ReaderMessages::CannotResolvePath.code || code == ReaderMessages::ErrorOpeningResultsFile.code) {
        return ExitStatus::unreadableFile;
    }
    if (code == ReaderMessages::ErrorReadingResultsFile.code && !CanBeRead(path)) return ExitStatus::unreadableFile;
    return ExitStatus::badFile;
}

// The library opens files by absolute paths; a user looks for them where the main file was named.
std::string ShownPath(const std::string& opened, const std::string& mainPath) {
    const auto openedPath = std::filesystem::path(opened).lexically_normal();
    const auto absoluteMain = std::filesystem::absolute(mainPath).lexically_normal();
    if (openedPath == absoluteMain) return mainPath;
    if (openedPath.parent_path() != absoluteMain.parent_path()) return opened;
    return (std::filesystem::path(mainPath).parent_path() / openedPath.filename()).string();
}

Problem ToProblem(const orvalo::Exception& exception, const std::string& path) {
    Problem problem;
    problem.code = exception.code();
    problem.message = WithoutPlace(exception.what());
    problem.status = StatusOf(problem.code, path);
    return problem;
}

class Stopwatch {
public:
    double Seconds() const { return std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count(); }

private:
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

void ReadModel(InputFile& file, bool cubesOnly) {
    unsigned long long cubesRead = 0;
    const std::uint64_t declared = IsTerminal(stderr) ? DeclaredCubes(file.path) : 0;
    orvalo::ReadOptions options;
    options.cubesOnly = cubesOnly;
    options.cubesRead = &cubesRead;
    const ProgressBar bar(file.path, [&] {
        return ProgressBar::State{std::atomic_ref(cubesRead).load(std::memory_order_relaxed), declared};
    });
    const Stopwatch stopwatch;
    try {
        file.model = std::make_unique<orvalo::Model>(orvalo::ReadModel(file.path, options));
        file.seconds = stopwatch.Seconds();
        if (!cubesOnly) file.problems = TemperatureWarnings(*file.model);
    } catch (const orvalo::ReadError& error) {
        file.seconds = stopwatch.Seconds();
        Problem problem = ToProblem(error, file.path);
        problem.place = error.Place();
        problem.row = error.Row();
        if (problem.place.Known()) problem.shownPath = ShownPath(problem.place.path, file.path);
        file.problems.push_back(problem);
    }
}

void ReadResults(InputFile& file) {
    float percent = 0.0F;
    orvalo::ReadOptions options;
    options.percentRead = &percent;
    const ProgressBar bar(file.path, [&] {
        const float done = std::atomic_ref(percent).load(std::memory_order_relaxed);
        return ProgressBar::State{static_cast<std::uint64_t>(done), 100};
    });
    const Stopwatch stopwatch;
    try {
        file.results = orvalo::ReadResults(file.path, options);
    } catch (const orvalo::Exception& exception) {
        file.problems.push_back(ToProblem(exception, file.path));
    }
    file.seconds = stopwatch.Seconds();
}

}  // namespace

ExitStatus InputFile::Status() const {
    ExitStatus worst = ExitStatus::good;
    for (const Problem& problem : problems) {
        if (problem.severity == Problem::Severity::error) worst = std::max(worst, problem.status);
    }
    return worst;
}

InputFile ReadInputFile(const std::string& path, bool cubesOnly) {
    if (DetectFileKind(path) == FileKind::results) return ReadResultsFile(path);
    InputFile file;
    file.path = path;
    ReadModel(file, cubesOnly);
    return file;
}

InputFile ReadResultsFile(const std::string& path) {
    InputFile file;
    file.path = path;
    file.kind = FileKind::results;
    ReadResults(file);
    return file;
}
