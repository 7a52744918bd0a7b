#pragma once

#include <cstdint>
#include <string>

#include <Orvalo3DReader/Reader/InputPlace.h>

#include "ExitStatus.h"

/// Something to be said about an input file.
struct Problem {
    enum class Severity { warning, error };

    Severity severity = Severity::error;
    /// The number in the library's catalogue; 0 for warnings.
    int code = 0;
    std::string message;
    /// Where it is, `path` empty when nowhere.
    orvalo::InputPlace place;
    /// The path of `place` in the terms in which the user named the main file.
    std::string shownPath;
    /// The bulk row it is in, from 1; 0 outside rows.
    std::uint64_t row = 0;
    /// What it makes of the program's exit status.
    ExitStatus status = ExitStatus::badFile;
};
