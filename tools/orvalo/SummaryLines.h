#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include <fmt/format.h>

/// Lays out a summary for people: a title in a column of its own, its lines beside it.
class SummaryLines {
public:
    void Add(const std::string& title, const std::string& line) { text_ += fmt::format("  {:<13}{}\n", title, line); }

    /// Adds a list under one title, cut short after `most` entries; nothing for an empty one.
    void AddList(const std::string& title, const std::vector<std::string>& lines, std::size_t most = 12) {
        for (std::size_t i = 0; i < lines.size() && i < most; ++i) Add(i == 0 ? title : "", lines[i]);
        if (lines.size() > most) Add("", fmt::format("... and {} more", lines.size() - most));
    }

    const std::string& Text() const { return text_; }

private:
    std::string text_;
};
