#include "Check/CellFilter.h"

#include <algorithm>
#include <bit>
#include <chrono>

#include "Check/CellSurvey.h"

namespace orvalo {

Scatter::Scatter() {
    const auto now = static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
    const auto place = static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(this));
    factor_ = ((now ^ place << 20U) * 0x9E3779B97F4A7C15U) | 1U;
}

CellBits::CellBits(const Bounds& box)
    : box_(box),
      lengthX_(static_cast<std::uint64_t>(box.maxX - box.minX + 1)),
      lengthY_(static_cast<std::uint64_t>(box.maxY - box.minY + 1)),
      words_(static_cast<std::size_t>((VolumeOf(box) + 63) / 64)) {}

std::uint64_t CellBits::Index(const Point& point) const {
    const auto x = static_cast<std::uint64_t>(point.x - box_.minX);
    const auto y = static_cast<std::uint64_t>(point.y - box_.minY);
    const auto z = static_cast<std::uint64_t>(point.z - box_.minZ);
    return (z * lengthY_ + y) * lengthX_ + x;
}

bool CellBits::Add(CellKey key) {
    const std::uint64_t index = Index(PointOf(key));
    std::uint64_t& word = words_[static_cast<std::size_t>(index / 64)];
    const std::uint64_t bit = std::uint64_t{1} << index % 64;
    const bool there = (word & bit) != 0;
    word |= bit;
    return there;
}

bool CellBits::Has(const Point& point) const {
    if (!Holds(box_, point)) return false;
    const std::uint64_t index = Index(point);
    return (words_[static_cast<std::size_t>(index / 64)] >> index % 64 & 1U) != 0;
}

void CellFilter::Clear(std::uint64_t cells) {
    const std::uint64_t wanted = std::bit_ceil(cells / cellsPerWord * 2 + 1);
    mask_ = static_cast<std::size_t>(std::min<std::uint64_t>(wanted, words_.size())) - 1;
    std::fill_n(words_.begin(), mask_ + 1, 0);
}

void CellNumbers::Clear() {
    if (size_ > 0) std::fill(slots_.begin(), slots_.end(), Slot());
    size_ = 0;
}

bool CellNumbers::Add(CellKey key) {
    Slot& slot = SlotOf(key);
    if (slot.key == key + 1) return true;
    // Beyond that, slots are hard to find.
    if (size_ >= slots_.size() / 4 * 3) return false;
    slot.key = key + 1;
    ++size_;
    return true;
}

CellNumbers::Slot& CellNumbers::SlotOf(CellKey key) {
    const std::size_t mask = slots_.size() - 1;
    auto at = static_cast<std::size_t>(scatter_(key) >> 16U) & mask;
    while (slots_[at].key != 0 && slots_[at].key != key + 1) at = (at + 1) & mask;
    return slots_[at];
}

}  // namespace orvalo
