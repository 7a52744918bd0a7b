#pragma once

#include <cstdio>
#include <string>

#include <fmt/format.h>

#include <Orvalo3DReader/Common/Exception.h>

#include "ExitStatus.h"
#include "HarmlessText.h"
#include "ProgressBar.h"
#include "export/Export.h"
#include "export/OutputFile.h"

/// Writes a file with a progress bar. What hinders it goes to standard error.
template <class Source>
ExitStatus RunExport(const Source& source, const std::string& path, const ExportOptions& options) {
    ExportProgress progress;
    const ProgressBar bar(path, [&] {
        return progress.total > 0 ? ProgressBar::State{progress.done, progress.total} : PercentState(progress.percent);
    });
    try {
        RequirePlace(path, options.overwrite);
        Export(source, path, options, progress);
        return ExitStatus::good;
    } catch (const OutputError& error) {
        fmt::print(stderr, "{}\n", Harmless(error.what()));
    } catch (const orvalo::Exception& exception) {
        fmt::print(stderr, "{}: error: {}\n", Harmless(path), Harmless(exception.what()));
        // Otherwise the form cannot hold something.
        if (!exception.what().starts_with("Unable to write")) return ExitStatus::badFile;
    }
    return ExitStatus::unreadableFile;
}
