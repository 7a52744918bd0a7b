#include "CheckedFile.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <memory>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include <Orvalo3DReader/Check/CheckModel.h>
#include <Orvalo3DReader/Check/CheckResults.h>
#include <Orvalo3DReader/Check/Rules.h>
#include <Orvalo3DReader/Common/Exception.h>
#include <Orvalo3DReader/Common/ReaderMessages.h>
#include <Orvalo3DReader/Common/Stopped.h>

#include "DeclaredCubes.h"
#include "Interruption.h"
#include "PathText.h"
#include "ProgressBar.h"
#include "Terminal.h"

namespace {

using orvalo::Diagnostic;
using orvalo::ReaderMessages;
using orvalo::Severity;

// The library names file, line and column in a first line of its own, which the true place replaces.
std::string WithoutPlace(const std::string& what) {
    if (!what.starts_with("Error in file \"")) return what;
    const std::size_t end = what.find(":\n", what.rfind("\", line "));
    return end == std::string::npos ? what : what.substr(end + 2);
}

bool CanBeRead(const std::string& path) {
    std::ifstream file(PathOf(path), std::ios::binary);
    file.peek();
    return file.is_open() && !file.bad();
}

// Results that end too early are reported by the same message as a disk that fails, so the file is asked again.
ExitStatus StatusOf(const Diagnostic& diagnostic, const std::string& path) {
    if (diagnostic.severity == Severity::Warning) return ExitStatus::good;
    const int code = diagnostic.code;
    const bool unreadable =
        code == ReaderMessages::ErrorOpeningInputFile.code || code == ReaderMessages::ErrorReadingInputFile.code ||
        code == ReaderMessages::CannotResolvePath.code || code == ReaderMessages::ErrorOpeningResultsFile.code ||
        (code == ReaderMessages::ErrorReadingResultsFile.code && !CanBeRead(path));
    return unreadable ? ExitStatus::unreadableFile : ExitStatus::badFile;
}

std::string RuleOf(int code) {
    for (const orvalo::Rule& rule : orvalo::Rules()) {
        if (rule.code == code) return rule.name;
    }
    return "error";
}

std::vector<Diagnostic> CheckAsModel(const Input& input, orvalo::CheckOptions options) {
    unsigned long long cubesRead = 0;
    options.cubesRead = &cubesRead;
    const std::uint64_t declared = IsTerminal(stderr) ? DeclaredCubes(input.Path()) : 0;
    const ProgressBar bar(input.Name(), [&] { return CubesState(cubesRead, declared); });
    return orvalo::CheckModel(input.Path(), options);
}

std::vector<Diagnostic> CheckAsResults(const Input& input, orvalo::CheckOptions options) {
    float percent = 0.0F;
    options.percentRead = &percent;
    const ProgressBar bar(input.Name(), [&] { return PercentState(percent); });
    return orvalo::CheckResults(input.Path(), options);
}

void Judge(std::vector<Diagnostic>& diagnostics, const CheckSettings& settings) {
    std::erase_if(diagnostics, [&](const Diagnostic& diagnostic) {
        return diagnostic.severity == Severity::Warning &&
               (!settings.warnings || settings.disabled.count(diagnostic.rule) > 0);
    });
    if (!settings.warningsAreErrors) return;
    for (Diagnostic& diagnostic : diagnostics) diagnostic.severity = Severity::Error;
}

}  // namespace

CheckedFile::CheckedFile(const std::string& name, const std::optional<FileKind>& told)
    : input(name), kind(told ? *told : DetectFileKind(input.Path())) {}

void CheckedFile::Add(const orvalo::Exception& exception) {
    Diagnostic diagnostic;
    diagnostic.code = exception.code();
    diagnostic.rule = RuleOf(exception.code());
    diagnostic.message = WithoutPlace(exception.what());
    diagnostics.push_back(std::move(diagnostic));
}

std::size_t CheckedFile::Errors() const {
    return static_cast<std::size_t>(
        std::count_if(diagnostics.begin(), diagnostics.end(),
                      [](const Diagnostic& diagnostic) { return diagnostic.severity == Severity::Error; }));
}

ExitStatus CheckedFile::Status() const {
    ExitStatus worst = ExitStatus::good;
    for (const Diagnostic& diagnostic : diagnostics) worst = std::max(worst, StatusOf(diagnostic, input.Path()));
    return worst;
}

void Check(CheckedFile& file, const CheckSettings& settings) {
    if (file.input.IsDirectory()) {
        Diagnostic diagnostic;
        diagnostic.code = ReaderMessages::ErrorReadingInputFile.code;
        diagnostic.rule = RuleOf(diagnostic.code);
        diagnostic.message = settings.recursive
                                 ? "There is no *.model file in this directory."
                                 : "This is a directory. With 'check -r' the *.model files in it are checked.";
        file.diagnostics.push_back(std::move(diagnostic));
        return;
    }
    orvalo::CheckOptions options;
    options.warnings = settings.warnings;
    options.firstOnly = settings.firstOnly;
    options.threads = settings.threads;
    const Interruption interruption;
    options.stop = interruption.Flag();
    try {
        file.diagnostics =
            file.kind == FileKind::model ? CheckAsModel(file.input, options) : CheckAsResults(file.input, options);
    } catch (const orvalo::Stopped&) {
        throw Interrupted();
    } catch (const orvalo::Exception& exception) {
        file.Add(exception);
    }
    Judge(file.diagnostics, settings);
}

CheckedFile CheckFile(const std::string& name, const CheckSettings& settings) {
    CheckedFile file(name, settings.kind);
    Check(file, settings);
    return file;
}
