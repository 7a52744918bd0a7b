#include "Check/ReadingRecord.h"

#include <algorithm>
#include <cstddef>

namespace orvalo {

InputPlace ReadingRecord::PlaceOf(const ReadPlace& place) const {
    if (place.file < 0) return {};
    return {files[static_cast<std::size_t>(place.file)].path, place.place.offset, place.place.line, place.place.column};
}

std::vector<InputPlace> ReadingRecord::IncludedFrom(int file) const {
    std::vector<InputPlace> chain;
    while (file >= 0) {
        const File& included = files[static_cast<std::size_t>(file)];
        if (included.parent >= 0) chain.push_back(PlaceOf({included.parent, included.includedAt}));
        file = included.parent;
    }
    return chain;
}

std::vector<std::pair<int, std::uint64_t>> ReadingRecord::PathTo(const ReadPlace& place) const {
    std::vector<std::pair<int, std::uint64_t>> path;
    std::uint64_t offset = place.place.offset;
    for (int file = place.file; file >= 0; file = files[static_cast<std::size_t>(file)].parent) {
        path.emplace_back(file, offset);
        offset = files[static_cast<std::size_t>(file)].includedAt.offset;
    }
    std::reverse(path.begin(), path.end());
    return path;
}

bool ReadingRecord::Before(const ReadPlace& a, const ReadPlace& b) const {
    if (a.file == b.file) return a.place.offset < b.place.offset;
    const auto pathToA = PathTo(a);
    const auto pathToB = PathTo(b);
    // Where the paths part, they do so in one file, at offsets that differ or at an include of which one goes inside.
    for (std::size_t i = 0; i < std::min(pathToA.size(), pathToB.size()); ++i) {
        if (pathToA[i].second != pathToB[i].second) return pathToA[i].second < pathToB[i].second;
    }
    return pathToA.size() < pathToB.size();
}

}  // namespace orvalo
