#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include "CellKey.h"

/// Which entry of a list is about a cell.
struct CellEntry {
    CellKey key = 0;
    std::size_t index = 0;
};

/// The cells of a list in ascending order, each once: of several entries for a cell the last one counts. `keyAt` gives
/// the key of an entry.
template <class KeyAt>
std::vector<CellEntry> OrderCells(std::size_t count, const KeyAt& keyAt) {
    std::vector<CellEntry> entries(count);
    bool ascending = true;
    for (std::size_t i = 0; i < count; ++i) {
        entries[i] = {keyAt(i), i};
        ascending = ascending && (i == 0 || entries[i - 1].key < entries[i].key);
    }
    if (ascending) return entries;
    std::sort(entries.begin(), entries.end(), [](const CellEntry& a, const CellEntry& b) {
        return a.key != b.key ? a.key < b.key : a.index > b.index;
    });
    const auto same = [](const CellEntry& a, const CellEntry& b) { return a.key == b.key; };
    entries.erase(std::unique(entries.begin(), entries.end(), same), entries.end());
    return entries;
}

/// Goes through two lists of cells side by side: `work` is called with both entries of a cell, of which one is null
/// where only the other list has it.
template <class Work>
void JoinCells(const std::vector<CellEntry>& a, const std::vector<CellEntry>& b, const Work& work) {
    auto inA = a.begin();
    auto inB = b.begin();
    while (inA != a.end() || inB != b.end()) {
        if (inB == b.end() || (inA != a.end() && inA->key < inB->key)) {
            work(&*inA++, nullptr);
        } else if (inA == a.end() || inB->key < inA->key) {
            work(nullptr, &*inB++);
        } else {
            work(&*inA++, &*inB++);
        }
    }
}
