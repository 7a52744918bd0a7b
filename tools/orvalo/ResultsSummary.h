#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include <Orvalo3DReader/Results/Results.h>

/// What an engineer wants to know of results at a glance.
struct ResultsSummary {
    struct Column {
        /// Empty where the file names none.
        std::string name;
        /// Over the entries that are numbers.
        double least = 0.0;
        double greatest = 0.0;
        double mean = 0.0;
        /// Entries that are not a number.
        std::size_t notNumbers = 0;
    };
    struct Axis {
        int first = 0;
        int last = 0;
    };
    /// The box of all coordinates.
    struct Box {
        std::array<Axis, 3> axes;
        std::uint64_t cells = 0;
        /// Cells that at least one row covers.
        std::uint64_t covered = 0;
    };

    /// "text" or "mat".
    std::string format;
    std::size_t rows = 0;
    std::size_t indexColumns = 0;
    /// Names of the index columns where the file has them.
    std::vector<std::string> indexNames;
    std::vector<Column> columns;
    /// Nothing without rows that carry coordinates.
    std::optional<Box> box;
};

ResultsSummary Summarize(const orvalo::Results& results);

/// The names of the value columns; empty where the file has none.
std::vector<std::string> ValueColumnNames(const orvalo::Results& results);

/// The whole summary for scripts. Numbers that are not finite become null.
void AddToJson(nlohmann::ordered_json& document, const ResultsSummary& summary);

/// The whole summary for people, as indented lines.
std::string ToText(const ResultsSummary& summary);
