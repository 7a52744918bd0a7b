#include "Reader/PlainNumber.h"

#include <cstddef>
#include <string_view>

#include "Common/Bytes.h"
#include "Common/ParseNumber.h"

namespace orvalo {

namespace {

const char* AfterDigits(const char* p) {
    while (NonDigits(LoadEight(p)) == 0) p += 8;
    return p + LeadingDigits(LoadEight(p));
}

}  // namespace

const char* ScanLongNumber(const char* p, const char* end, double& value) {
    const char* const first = p;
    p += *p == '-' || *p == '+' ? 1 : 0;
    const char* const integer = p;
    p = AfterDigits(integer);
    std::ptrdiff_t digits = p - integer;
    if (*p == '.') {
        const char* const fraction = p + 1;
        p = AfterDigits(fraction);
        digits += p - fraction;
    }
    if (digits == 0) return nullptr;
    if ((*p | 0x20) == 'e') {
        p += p[1] == '-' || p[1] == '+' ? 2 : 1;
        const char* const exponent = p;
        p = AfterDigits(p);
        if (p == exponent) return nullptr;
    }
    // Only then is it worth converting: it may be cut off where the buffer ends.
    if (!EndsPlainNumber(p, end)) return nullptr;
    value = DecimalValue({first, static_cast<std::size_t>(p - first)});
    return p;
}

}  // namespace orvalo
