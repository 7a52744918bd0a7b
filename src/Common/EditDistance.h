#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

namespace orvalo {

/// How many letters must be put in, left out, replaced, or swapped with the next one to turn one word into another
/// (the restricted distance of Damerau and Levenshtein). Words of more than 31 letters are far from everything.
inline std::size_t EditDistance(std::string_view a, std::string_view b) {
    constexpr std::size_t longest = 31;
    if (a.size() > longest || b.size() > longest) return std::max(a.size(), b.size());
    std::array<std::array<std::size_t, longest + 1>, longest + 1> d{};
    for (std::size_t i = 0; i <= a.size(); ++i) d[i][0] = i;
    for (std::size_t j = 0; j <= b.size(); ++j) d[0][j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t replaced = d[i - 1][j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
            d[i][j] = std::min({d[i - 1][j] + 1, d[i][j - 1] + 1, replaced});
            const bool swapped = i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1];
            if (swapped) d[i][j] = std::min(d[i][j], d[i - 2][j - 2] + 1);
        }
    }
    return d[a.size()][b.size()];
}

}  // namespace orvalo
