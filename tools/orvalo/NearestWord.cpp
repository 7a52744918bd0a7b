#include "NearestWord.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

std::size_t EditDistance(std::string_view a, std::string_view b) {
    // Rows of the table of distances between all beginnings: of the letter before last, of the last, of this one.
    std::array<std::vector<std::size_t>, 3> rows;
    rows.fill(std::vector<std::size_t>(b.size() + 1));
    for (std::size_t j = 0; j <= b.size(); ++j) rows[1][j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        auto& [beforeLast, last, row] = rows;
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1)});
            const bool swapped = i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1];
            if (swapped) row[j] = std::min(row[j], beforeLast[j - 2] + 1);
        }
        std::rotate(rows.begin(), rows.begin() + 1, rows.end());
    }
    return rows[1][b.size()];
}

std::string NearestWord(std::string_view word, const std::vector<std::string>& words) {
    std::string nearest;
    std::size_t least = std::min<std::size_t>(2, (word.size() + 1) / 3) + 1;
    for (const std::string& candidate : words) {
        const std::size_t distance = EditDistance(word, candidate);
        if (distance >= least) continue;
        least = distance;
        nearest = candidate;
    }
    return nearest;
}
