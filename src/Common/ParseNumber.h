#pragma once

#include <cstdint>
#include <string_view>

#include "Common/FastDecimal.h"

namespace orvalo {

/// The value of a decimal number [sign] digits [. digits] [e [sign] digits], correctly rounded: beyond every double it
/// is an infinity, below every double a zero. The text must have that form.
double DecimalValue(std::string_view text);

/// ParseNumber in all its generality.
const char* ParseAnyNumber(const char* p, const char* end, double& value);

/// Converts the number at the start of [p, end) as strtod does in the "C" locale, whatever locale is set: white space,
/// sign, decimal or hexadecimal digits with an exponent, inf, infinity, nan or nan(...), the longest that there is.
/// Returns the place after it, or `p` with a value of 0 when there is none. `*end` must be readable, be no part of a
/// number, and have eight readable bytes after it.
inline const char* ParseNumber(const char* p, const char* end, double& value) {
    const char* const stop = FastDecimal(p, value);
    // Of a hexadecimal number that takes the leading zero alone.
    if (stop == nullptr || (*stop | 0x20) == 'x') return ParseAnyNumber(p, end, value);
    return stop;
}

}  // namespace orvalo
