#include "InputFile.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <Orvalo3DReader/Common/Exception.h>
#include <Orvalo3DReader/Common/Stopped.h>
#include <Orvalo3DReader/Reader/ReadModel.h>
#include <Orvalo3DReader/Reader/ReadResults.h>

#include "DeclaredCubes.h"
#include "IncludedFiles.h"
#include "Interruption.h"
#include "ModelWords.h"
#include "PathText.h"
#include "ProgressBar.h"
#include "Terminal.h"

namespace {

class Stopwatch {
public:
    explicit Stopwatch(double& seconds) : seconds_(seconds) {}
    Stopwatch(const Stopwatch&) = delete;
    Stopwatch& operator=(const Stopwatch&) = delete;
    ~Stopwatch() { seconds_ = std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count(); }

private:
    double& seconds_;
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

CheckSettings ToCheck(const ReadSettings& settings) {
    CheckSettings own;
    own.threads = settings.threads;
    return own;
}

/// Whether a model can be read twice: a pipe that it includes would be waited for the second time.
bool CanBeReadTwice(const std::string& path) {
    const std::vector<std::string> paths = WithIncludedFiles(path);
    return std::all_of(paths.begin(), paths.end(), [](const std::string& included) {
        return MayBeReread(included) || !std::filesystem::exists(PathOf(included));
    });
}

void ReadModel(InputFile& file, const ReadSettings& settings) {
    const Input& input = file.checked.input;
    unsigned long long cubesRead = 0;
    const std::uint64_t declared = IsTerminal(stderr) ? DeclaredCubes(input.Path()) : 0;
    orvalo::ReadOptions options;
    options.cubesOnly = settings.cubesOnly;
    options.threads = settings.threads;
    options.cubesRead = &cubesRead;
    const Interruption interruption;
    options.stop = interruption.Flag();
    const ProgressBar bar(input.Name(), [&] { return CubesState(cubesRead, declared); });
    try {
        const Stopwatch stopwatch(file.seconds);
        file.model = std::make_unique<orvalo::Model>(orvalo::ReadModel(input.Path(), options));
    } catch (const orvalo::Stopped&) {
        throw Interrupted();
    } catch (const orvalo::ReadError& error) {
        file.checked.Add(error);
        file.checked.diagnostics.back().place = error.Place();
        file.checked.diagnostics.back().row = error.Row();
    }
}

void ReadResults(InputFile& file, const ReadSettings& settings) {
    const Input& input = file.checked.input;
    float percent = 0.0F;
    orvalo::ReadOptions options;
    options.percentRead = &percent;
    options.threads = settings.threads;
    const Interruption interruption;
    options.stop = interruption.Flag();
    const ProgressBar bar(input.Name(), [&] { return PercentState(percent); });
    const Stopwatch stopwatch(file.seconds);
    file.results = orvalo::ReadResults(input.Path(), options);
}

void ReadOrExplainResults(InputFile& file, const ReadSettings& settings) {
    try {
        ReadResults(file, settings);
    } catch (const orvalo::Stopped&) {
        throw Interrupted();
    } catch (const orvalo::Exception& exception) {
        Check(file.checked, ToCheck(settings));
        if (file.checked.Errors() == 0) file.checked.Add(exception);
    }
}

void ReadOrExplainModel(InputFile& file, const ReadSettings& settings) {
    const bool checked = settings.check && !settings.cubesOnly && CanBeReadTwice(file.checked.input.Path());
    if (checked) Check(file.checked, ToCheck(settings));
    if (file.checked.Errors() > 0) return;
    ReadModel(file, settings);
    if (file.model || checked || settings.cubesOnly || !CanBeReadTwice(file.checked.input.Path())) return;
    std::vector<orvalo::Diagnostic> first = std::move(file.checked.diagnostics);
    Check(file.checked, ToCheck(settings));
    if (file.checked.Errors() == 0) file.checked.diagnostics = std::move(first);
}

}  // namespace

InputFile ReadInputFile(const std::string& name, const ReadSettings& settings) {
    InputFile file(name, settings.kind);
    if (file.checked.input.IsDirectory()) {
        Check(file.checked, ToCheck(settings));
    } else if (file.checked.kind == FileKind::results) {
        ReadOrExplainResults(file, settings);
    } else {
        ReadOrExplainModel(file, settings);
    }
    return file;
}
