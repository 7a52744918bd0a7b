#pragma once

#include <cstddef>
#include <cstdio>
#include <string>

#include <CLI/App.hpp>
#include <fmt/color.h>

/// What was asked for on the command line.
enum class ColourMode { automatic, always, never };

/// Adds `--color` to a command.
void AddColourOption(CLI::App& command, ColourMode& mode);

/// How text for people looks on a stream: the colours that compilers use, or none, and the columns there are.
class TextStyle {
public:
    TextStyle(std::FILE* stream, ColourMode mode);

    std::size_t Width() const { return width_; }

    std::string Bold(const std::string& text) const { return Paint(fmt::emphasis::bold, text); }
    std::string Error(const std::string& text) const { return Paint(Strong(fmt::terminal_color::red), text); }
    std::string Warning(const std::string& text) const { return Paint(Strong(fmt::terminal_color::magenta), text); }
    std::string Note(const std::string& text) const { return Paint(Strong(fmt::terminal_color::cyan), text); }
    std::string Mark(const std::string& text) const { return Paint(Strong(fmt::terminal_color::green), text); }

private:
    static fmt::text_style Strong(fmt::terminal_color colour) { return fmt::emphasis::bold | fmt::fg(colour); }
    std::string Paint(const fmt::text_style& style, const std::string& text) const {
        return colour_ ? fmt::format(style, "{}", text) : text;
    }

    bool colour_;
    std::size_t width_;
};
