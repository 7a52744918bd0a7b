#pragma once

#include <cstdint>

#include <Orvalo3DReader/Model/Bounds.h>

#include "Common/Simd.h"

namespace orvalo {

/// The bounds of many packed cube records, three 16-bit coordinates in the low bits of each word, gathered with a few
/// instructions per record.
class RowBounds {
public:
    void Add(std::uint64_t packed) { extremes_.Add(packed); }

    /// Widens `bounds` as adding every record to it would.
    void Widen(Bounds& bounds) const {
        const auto least = extremes_.Least();
        const auto greatest = extremes_.Greatest();
        if (least[0] > greatest[0]) return;  // There is no record.
        bounds.Update(least[0], least[1], least[2]);
        bounds.Update(greatest[0], greatest[1], greatest[2]);
    }

private:
    simd::Extremes extremes_;
};

}  // namespace orvalo
