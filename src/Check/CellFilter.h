#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include <Orvalo3DReader/Model/Bounds.h>

#include "Check/CellList.h"

namespace orvalo {

/// Makes a number of a cell that looks random: its high, middle and low bits are used for different things. Each object
/// does it in a way of its own, so that no file can be made up in which cells collide.
class Scatter {
public:
    Scatter();
    std::uint64_t operator()(CellKey key) const {
        const std::uint64_t mixed = (key + 1) * factor_;
        return (mixed ^ mixed >> 32U) * 0xD6E8FEB86659FD93U;
    }

private:
    std::uint64_t factor_;
};

/// A bit for every cell of a box.
class CellBits {
public:
    explicit CellBits(const Bounds& box);

    void Clear() { words_.assign(words_.size(), 0); }

    /// Adds a cell of the box; returns whether it was there.
    bool Add(CellKey key);
    bool Has(const Point& point) const;

private:
    std::uint64_t Index(const Point& point) const;

    Bounds box_;
    std::uint64_t lengthX_;
    std::uint64_t lengthY_;
    std::vector<std::uint64_t> words_;
};

/// Cells of which it is known for sure that they were not added, and likely that they were.
class CellFilter {
public:
    /// Keeps at most so many bytes, a power of two.
    explicit CellFilter(std::size_t bytes) : words_(bytes / sizeof(std::uint64_t)), mask_(words_.size() - 1) {}

    /// Begins anew, with as much memory as so many cells need.
    void Clear(std::uint64_t cells);
    /// Adds a cell; returns whether it may have been there.
    bool Add(std::uint64_t scattered) {
        std::uint64_t& word = words_[Word(scattered)];
        const std::uint64_t bits = Bits(scattered);
        const bool there = (word & bits) == bits;
        word |= bits;
        return there;
    }
    bool MayHave(std::uint64_t scattered) const {
        const std::uint64_t bits = Bits(scattered);
        return (words_[Word(scattered)] & bits) == bits;
    }
    /// How many cells can be added before too many others seem to be there.
    std::uint64_t Room() const { return words_.size() * cellsPerWord; }

private:
    static constexpr std::uint64_t cellsPerWord = 10;

    // All bits of a cell lie in one word, so that adding it touches memory once.
    std::size_t Word(std::uint64_t scattered) const { return static_cast<std::size_t>(scattered >> 20U) & mask_; }
    static std::uint64_t Bits(std::uint64_t scattered) {
        return std::uint64_t{1} << (scattered & 63U) | std::uint64_t{1} << (scattered >> 6U & 63U) |
               std::uint64_t{1} << (scattered >> 12U & 63U);
    }

    std::vector<std::uint64_t> words_;
    std::size_t mask_;
};

/// A number for each of some cells, 0 at first.
class CellNumbers {
public:
    /// Keeps at most so many bytes, a power of two.
    CellNumbers(std::size_t bytes, const Scatter& scatter) : slots_(bytes / sizeof(Slot)), scatter_(scatter) {}

    void Clear();
    /// Adds a cell; false where there is no more room.
    bool Add(CellKey key);
    /// The number of a cell, or null for one that was not added.
    std::uint64_t* Find(CellKey key) {
        Slot& slot = SlotOf(key);
        return slot.key == key + 1 ? &slot.number : nullptr;
    }
    std::uint64_t Size() const { return size_; }

    template <class Visit>
    void ForEachKey(const Visit& visit) const {
        for (const Slot& slot : slots_) {
            if (slot.key != 0) visit(slot.key - 1);
        }
    }

private:
    struct Slot {
        /// One more than that of the cell; 0 in an empty slot.
        CellKey key = 0;
        std::uint64_t number = 0;
    };

    Slot& SlotOf(CellKey key);

    std::vector<Slot> slots_;
    Scatter scatter_;
    std::uint64_t size_ = 0;
};

}  // namespace orvalo
