#pragma once

#include <cstdint>

#include <Orvalo3DReader/Model/Bounds.h>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace orvalo {

/// The bounds of many packed cube records, three 16-bit coordinates in the low bits of each word, gathered with a few
/// instructions per record.
class RowBounds {
public:
    void Add(std::uint64_t packed);
    /// Widens `bounds` as adding every record to it would.
    void Widen(Bounds& bounds) const;

private:
    bool defined_ = false;
#if defined(__SSE2__)
    __m128i lowest_ = _mm_set1_epi16(0x7FFF);
    __m128i highest_ = _mm_set1_epi16(-0x8000);
#else
    Bounds bounds_;
#endif
};

#if defined(__SSE2__)

inline void RowBounds::Add(std::uint64_t packed) {
    const __m128i record = _mm_cvtsi64_si128(static_cast<long long>(packed));
    lowest_ = _mm_min_epi16(lowest_, record);
    highest_ = _mm_max_epi16(highest_, record);
    defined_ = true;
}

inline void RowBounds::Widen(Bounds& bounds) const {
    if (!defined_) return;
    for (const __m128i corner : {lowest_, highest_}) {
        bounds.Update(static_cast<short>(_mm_extract_epi16(corner, 0)),
                      static_cast<short>(_mm_extract_epi16(corner, 1)),
                      static_cast<short>(_mm_extract_epi16(corner, 2)));
    }
}

#else

inline void RowBounds::Add(std::uint64_t packed) {
    defined_ = true;
    bounds_.Update(static_cast<short>(packed), static_cast<short>(packed >> 16U), static_cast<short>(packed >> 32U));
}

inline void RowBounds::Widen(Bounds& bounds) const {
    if (!defined_) return;
    bounds.Update(bounds_.minX, bounds_.minY, bounds_.minZ);
    bounds.Update(bounds_.maxX, bounds_.maxY, bounds_.maxZ);
}

#endif

}  // namespace orvalo
