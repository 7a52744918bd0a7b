#pragma once

#include <cstddef>
#include <memory>

#include <Orvalo3DReader/Export.h>
#include <Orvalo3DReader/Model/Samples.h>

namespace orvalo {

/// A numbered array of samples, held as doubles or as floats.
///
/// Copies show the same samples as their source and share them; the last copy releases them.
class ORVALO3DREADER_EXPORT Table {
public:
    /// An empty table.
    Table() = default;
    /// Shares the samples. There is no move: it would leave `data` behind without its buffer.
    Table(const Table&) = default;
    /// Shares the samples.
    Table& operator=(const Table&) = default;

    /// Makes room for `count` zeroed samples, as doubles or as floats, to be filled through `data`. Throws OutOfMemory.
    void Allocate(bool asDoubles);

    /// Sample `index` as a double. Not range-checked.
    double Get(std::size_t index) const;

    /// The samples, if they are doubles; otherwise none.
    Samples<double> Doubles() const { return View<double>(doublePrecision); }
    /// The samples, if they are floats; otherwise none.
    Samples<float> Floats() const { return View<float>(!doublePrecision); }

    /// Positive from the file, negative when generated; -1 also for an empty table.
    int id = -1;
    /// Bytes per sample: 8 or 4; 0 until the samples are allocated.
    std::size_t elementSize = 0;
    /// Number of samples.
    std::size_t count = 0;
    /// `count` samples of `elementSize` bytes, or null. Owned by this object and its copies.
    void* data = nullptr;
    /// Whether the samples are doubles (true) or floats.
    bool doublePrecision = true;

private:
    template <class Number>
    Samples<Number> View(bool holdsThem) const {
        return holdsThem && data != nullptr ? Samples<Number>(static_cast<const Number*>(data), count)
                                            : Samples<Number>();
    }

    std::shared_ptr<unsigned char[]> storage_;
};

}  // namespace orvalo
