#pragma once

#include <map>
#include <optional>
#include <string>

#include <CLI/App.hpp>
#include <CLI/Validators.hpp>

#include "FileKind.h"

enum class OutputFormat { text, json, sarif, markdown };

/// Adds `--format` to a command, with those formats that it knows.
inline void AddFormatOption(CLI::App& command, OutputFormat& format, const std::map<std::string, OutputFormat>& formats,
                            const std::string& description) {
    std::string names;
    for (const auto& [name, ignored] : formats) names += (names.empty() ? "" : "|") + name;
    command.add_option("--format", format, description)
        ->transform(CLI::CheckedTransformer(formats))
        ->option_text(names);
}

/// Adds `--as`, for files of which the kind is not to be guessed.
inline void AddKindOption(CLI::App& command, std::optional<FileKind>& kind) {
    const std::map<std::string, FileKind> kinds = {{"model", FileKind::model}, {"results", FileKind::results}};
    command
        .add_option_function<std::string>(
            "--as", [&kind, kinds](const std::string& name) { kind = kinds.at(name); },
            "What the files are, instead of a guess by their content")
        ->check(CLI::IsMember(kinds))
        ->option_text("model|results");
}
