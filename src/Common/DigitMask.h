#pragma once

#include <cstdint>

#if defined(__SSE2__)
#include <emmintrin.h>
#else
#include "Common/Bytes.h"
#endif

namespace orvalo {

/// Which of the 64 bytes at `p` are no digits: the lowest bit is the first byte. Behind a byte of 138 or more up to
/// seven digits may be marked too.
inline std::uint64_t NonDigitMask(const char* p) {
    std::uint64_t mask = 0;
#if defined(__SSE2__)
    // Moved so that the digits become the ten lowest signed bytes.
    const __m128i offset = _mm_set1_epi8(static_cast<char>('0' + 128));
    const __m128i nine = _mm_set1_epi8(-128 + 9);
    for (unsigned int i = 0; i < 64; i += 16) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + i));
        const __m128i others = _mm_cmpgt_epi8(_mm_sub_epi8(bytes, offset), nine);
        mask |= std::uint64_t{static_cast<std::uint32_t>(_mm_movemask_epi8(others))} << i;
    }
#else
    for (unsigned int i = 0; i < 64; i += 8) {
        // The product gathers the lowest bit of every byte in the highest byte.
        const std::uint64_t others = NonDigits(LoadEight(p + i)) >> 7U;
        mask |= (others * 0x0102040810204080U >> 56U) << i;
    }
#endif
    return mask;
}

/// Which of the 64 bytes at `p` are `byte`.
inline std::uint64_t ByteMask(const char* p, char byte) {
    std::uint64_t mask = 0;
#if defined(__SSE2__)
    const __m128i wanted = _mm_set1_epi8(byte);
    for (unsigned int i = 0; i < 64; i += 16) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + i));
        mask |= std::uint64_t{static_cast<std::uint32_t>(_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, wanted)))} << i;
    }
#else
    for (unsigned int i = 0; i < 64; ++i) mask |= std::uint64_t{p[i] == byte} << i;
#endif
    return mask;
}

}  // namespace orvalo
