#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <string_view>

#include "results/ResultsSelection.h"

/// How rows are written as text.
enum class TextForm {
    /// As results are read: between tabs, with negative coordinates as 16-bit patterns.
    results,
    /// Between commas, with coordinates as they are.
    csv,
};

/// Hands the text of a selection to `write`, a portion at a time. Numbers have the fewest digits that bring them back;
/// `done` counts the rows.
void WriteTextRows(const ResultsSelection& selection, TextForm form, const std::function<void(std::string_view)>& write,
                   std::atomic<std::uint64_t>& done);
