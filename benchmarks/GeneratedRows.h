#pragma once

#include <cstddef>
#include <iterator>
#include <string>

#include <fmt/format.h>

/// The rows of files that several benchmarks read.

inline constexpr const char* resultsHeader = "x\ty\tz\tf\tv0\tv1\tv2\tv3\tv4\tv5\tv6\tv7\tv8\n";

/// A cube of a grid of 300 x 300 x n cells.
inline void AppendCube(std::string& text, std::size_t i) {
    fmt::format_to(std::back_inserter(text), "{} {} {} {}\n", i % 300 + 1, i / 300 % 300 + 1, i / 90000 + 1,
                   1 + (i * 7 + i / 300) % 4);
}

/// A row of text results with nine values as programs write them.
inline void AppendResultsRow(std::string& text, std::size_t i) {
    fmt::format_to(std::back_inserter(text), "{}\t{}\t{}\t{}", i % 200, i / 200 % 200, i / 40000, i % 3);
    for (std::size_t column = 0; column < 9; ++column) {
        const double value = static_cast<double>((i * 9 + column) * 2654435761 % 1000003) / 1e9 - 5e-4;
        fmt::format_to(std::back_inserter(text), "\t{:.9e}", value);
    }
    text += '\n';
}
