#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include <Orvalo3DReader/Check/CheckResults.h>
#include <Orvalo3DReader/Common/Stopped.h>
#include <Orvalo3DReader/Reader/ReadResults.h>
#include <Orvalo3DReader/Results/ResultsTxt.h>

#include "Check/Explanations.h"
#include "Check/FileSigns.h"
#include "Check/ResultsFindings.h"
#include "Check/ResultsHeader.h"
#include "Check/ResultsMatCheck.h"
#include "Check/ResultsTxtCheck.h"
#include "Common/Platform.h"
#include "Common/WithinMemory.h"
#include "Results/MatLayout.h"

namespace orvalo {

namespace {

using M = ReaderMessages;

constexpr const char* isModel = "This looks like a model, not like results.";

/// The first bytes of a file that can be read again, which is opened and stands at its start again.
std::string HeadOf(platform::InputFile& file, const std::string& path) {
    std::string head(4096, '\0');
    if (!platform::IsRegularFile(path) || !file.Open(path)) return {};
    head.resize(file.Read(head.data(), head.size()).value_or(0));
    return file.Seek(0) ? head : std::string();
}

bool IsMat(const std::string& head) {
    return mat::IsMat(std::string_view(head).substr(0, mat::headerSize));
}

/// What a file is instead of results; null for nothing known.
const char* OtherKind(const std::string& head) {
    if (IsMat(head)) return nullptr;
    const FileSign* const sign = FindFileSign(head);
    return sign != nullptr ? sign->message : LooksLikeModel(head) ? isModel : nullptr;
}

/// What is likely not meant in a file that can be read.
void Warn(ResultsFindings& findings, const Results& results) {
    platform::InputFile file;
    const std::string head = HeadOf(file, findings.Path());
    const auto* const text = dynamic_cast<const ResultsTxt*>(&results);
    const auto warn = [&](const char* rule, const char* message) {
        findings.AddWarning(rule, message).place = findings.PlaceAt(TextPlace{});
    };
    if (text == nullptr) {
        if (!results.ValuesDefined() && !results.IndicesDefined())
            warn("foreign-mat-file", "The file holds no matrices.");
        return;
    }
    const FileSign* const sign = FindFileSign(head);
    if (sign != nullptr && sign->mat) return warn("foreign-mat-file", sign->message);
    if (LooksLikeModel(head)) return warn("model-as-results", isModel);
    WarnOfHeader(findings, JoinedNames(text->ColumnNames()));
}

/// An error of a file that cannot be looked at again.
void ExplainUnseen(ResultsFindings& findings, const Exception& error) {
    Diagnostic& diagnostic = *findings.Add(error, {});
    const std::string reason = platform::WhyUnreadable(findings.Path());
    if (!reason.empty()) AddNote(diagnostic, "The system says: " + reason + '.');
    if (error.code() == M::ErrorOpeningResultsFile.code) return TellSimilar(diagnostic, findings.Path(), false);
    if (!reason.empty()) return;
    AddNote(diagnostic,
            "This is a pipe or a device: nothing can be looked at twice there, and a MAT-file cannot be "
            "read from it.");
}

/// Looks at the file again, up to the error that was thrown and, in a text, beyond. False where it is not found.
bool FindError(ResultsFindings& findings, platform::InputFile& file, const Exception& error, bool mat) {
    if (mat) {
        ResultsMatCheck(findings, file, file.Size().value_or(0)).Execute();
    } else {
        ResultsTxtCheck(findings).Execute(file);
    }
    const auto first = std::find_if(findings.diagnostics.begin(), findings.diagnostics.end(),
                                    [](const Diagnostic& d) { return d.severity == Severity::Error; });
    return first != findings.diagnostics.end() && first->code == error.code() && first->message == error.what();
}

std::vector<Diagnostic> Explain(const std::string& path, const CheckOptions& options, const Exception& error) {
    platform::InputFile file;
    const std::string head = HeadOf(file, path);
    const char* const other = OtherKind(head);
    CheckOptions used = options;
    // What follows is as wrong as the first line.
    if (other != nullptr) used.firstOnly = true;
    if (other != nullptr) used.warnings = false;
    ResultsFindings findings(path, used);
    if (head.empty()) {
        ExplainUnseen(findings, error);
    } else if (!FindError(findings, file, error, IsMat(head))) {
        ResultsFindings thrown(path, used);
        Diagnostic& diagnostic = *thrown.Add(error, {});
        AddNote(diagnostic, error.code() == M::OutOfMemory.code ? "Memory does not suffice to read the file."
                                                                : "The file has changed since it was read.");
        return std::move(thrown.diagnostics);
    }
    if (other != nullptr) {
        Diagnostic& diagnostic = findings.diagnostics.front();
        diagnostic.notes.clear();
        diagnostic.fixes.clear();
        AddNote(diagnostic, other, findings.PlaceAt(TextPlace{}));
    }
    return std::move(findings.diagnostics);
}

std::vector<Diagnostic> Check(const std::string& path, const CheckOptions& options) {
    try {
        ReadOptions reading;
        reading.threads = options.threads;
        reading.stop = options.stop;
        reading.percentRead = options.percentRead;
        const std::unique_ptr<Results> results = ReadResults(path, reading);
        ResultsFindings findings(path, options);
        if (options.warnings) Warn(findings, *results);
        return std::move(findings.diagnostics);
    } catch (const Stopped&) {
        throw;
    } catch (const Exception& error) {
        return Explain(path, options, error);
    }
}

}  // namespace

std::vector<Diagnostic> CheckResults(const std::string& path, const CheckOptions& options) {
    return WithinMemory(module::ResultsReader, __LINE__, [&] { return Check(path, options); });
}

}  // namespace orvalo
