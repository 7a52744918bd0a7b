#pragma once

#include <map>
#include <string>

#include <CLI/App.hpp>
#include <CLI/Validators.hpp>

enum class OutputFormat { text, json };

/// Adds `--format` to a command.
inline void AddFormatOption(CLI::App& command, OutputFormat& format) {
    const std::map<std::string, OutputFormat> formats = {{"text", OutputFormat::text}, {"json", OutputFormat::json}};
    command.add_option("--format", format, "text (for people) or json (for scripts)")
        ->transform(CLI::CheckedTransformer(formats))
        ->option_text("text|json");
}
