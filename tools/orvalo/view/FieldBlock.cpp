#include "FieldBlock.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <unordered_set>
#include <vector>

#include "view/PageBlocks.h"

namespace {

constexpr unsigned int levelsKept = 4;

std::size_t MaxLevels(unsigned int bits) {
    return (std::size_t{1} << bits) - levelsKept;
}

class Encoder {
public:
    Encoder(const SortedCells& cells, const CellField& field) : cells_(cells), field_(field) {}

    FieldBlock Encode(std::size_t maxSteps) {
        FindValues(maxSteps);
        block_.steps = values_.empty() ? maxSteps : values_.size();
        block_.bits = block_.steps <= MaxLevels(8) ? 8 : 16;
        Pack();
        return std::move(block_);
    }

private:
    /// The extremes, and all values if they are no more than `max`.
    void FindValues(std::size_t max) {
        std::unordered_set<double> values;
        for (std::size_t i = 0; i < cells_.Count(); ++i) {
            const std::optional<double> value = cells_[i].Value(field_);
            if (!value || !std::isfinite(*value)) continue;
            if (!block_.leastCell || *value < block_.least) Take(block_.least, block_.leastCell, *value, i);
            if (!block_.greatestCell || *value > block_.greatest) Take(block_.greatest, block_.greatestCell, *value, i);
            if (values.size() <= max) values.insert(*value);
        }
        if (values.size() > max) return;
        values_.assign(values.begin(), values.end());
        std::sort(values_.begin(), values_.end());
        if (values_.empty()) return;
        block_.values = PackBytes({reinterpret_cast<const char*>(values_.data()), values_.size() * sizeof(double)});
    }

    static void Take(double& extreme, std::optional<std::size_t>& cell, double value, std::size_t i) {
        extreme = value;
        cell = i;
    }

    std::size_t LevelOf(std::optional<double> value) const {
        const std::size_t top = MaxLevels(block_.bits) + levelsKept - 1;
        if (!value) return top;
        if (std::isnan(*value)) return top - 1;
        if (std::isinf(*value)) return *value > 0 ? top - 2 : top - 3;
        if (!values_.empty()) {
            const auto found = std::lower_bound(values_.begin(), values_.end(), *value);
            return static_cast<std::size_t>(found - values_.begin());
        }
        // Halved, as the range may be more than a double holds.
        const double part = (*value / 2 - block_.least / 2) / (block_.greatest / 2 - block_.least / 2);
        return static_cast<std::size_t>(std::lround(part * static_cast<double>(block_.steps - 1)));
    }

    void Pack() {
        const std::size_t count = cells_.Count();
        std::string bytes(count * block_.bits / 8, '\0');
        for (std::size_t i = 0; i < count; ++i) {
            const std::size_t level = LevelOf(cells_[i].Value(field_));
            bytes[i] = static_cast<char>(level & 0xFFU);
            if (block_.bits == 16) bytes[count + i] = static_cast<char>(level >> 8U);
        }
        block_.levels = PackBytes(bytes);
    }

    const SortedCells& cells_;
    const CellField& field_;
    FieldBlock block_;
    /// Ascending; none if there are too many.
    std::vector<double> values_;
};

}  // namespace

FieldBlock MakeFieldBlock(const SortedCells& cells, const CellField& field, std::size_t maxSteps) {
    return Encoder(cells, field).Encode(maxSteps);
}
