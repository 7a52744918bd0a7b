#include "Common/ParseNumber.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <limits>
#include <system_error>

#include "Common/Bytes.h"
#include "Common/ExactDecimal.h"
#include "Common/FastDecimal.h"

// The C library's strtod follows the locale of the process, and std::from_chars knows neither a sign "+", nor a prefix
// "0x", nor what to give beyond the range of a double. So the extent of a number is found here, and from_chars is left
// the one thing that is hard: rounding a decimal number correctly. Not all standard libraries have it for numbers that
// are no integers, and GCC's for 32-bit x86 is itself compiled for registers in which a product is rounded twice.

namespace orvalo {

namespace {

bool IsSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}
bool IsPayload(char c) {
    return IsDigit(c) || (ToLower(c) >= 'a' && ToLower(c) <= 'z') || c == '_';
}

int HexDigit(char c) {
    if (IsDigit(c)) return c - '0';
    c = ToLower(c);
    return c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1;
}

const char* SkipDigits(const char* p, const char* end) {
    return std::find_if_not(p, end, IsDigit);
}

/// Whether [p, end) begins with the lower-case `word`, in any case.
bool StartsWith(const char* p, const char* end, std::string_view word) {
    if (end - p < static_cast<std::ptrdiff_t>(word.size())) return false;
    return std::equal(word.begin(), word.end(), p, [](char w, char c) { return w == ToLower(c); });
}

/// Far beyond what any text could make up for with zeros, and far from the limits of the type.
constexpr std::int64_t largestExponent = std::int64_t{1} << 60;

/// Reads the exponent at `p`: `mark`, an optional sign, digits. Returns the place after it; without digits there is
/// no exponent, and so `p` itself.
const char* ReadExponent(const char* p, const char* end, char mark, std::int64_t& exponent) {
    exponent = 0;
    if (p == end || ToLower(*p) != mark) return p;
    const char* q = p + 1;
    const bool negative = q != end && *q == '-';
    if (q != end && (*q == '-' || *q == '+')) ++q;
    if (q == end || !IsDigit(*q)) return p;
    for (; q != end && IsDigit(*q); ++q) {
        if (exponent < largestExponent / 10) exponent = exponent * 10 + (*q - '0');
    }
    if (negative) exponent = -exponent;
    return q;
}

#if defined(__cpp_lib_to_chars) && !defined(__i386__)

/// What a decimal number (no sign, not zero) is that from_chars finds out of range: the side of its leading digit on
/// which one lies tells.
double BeyondRange(std::string_view text) {
    const char* const end = text.data() + text.size();
    const char* const integerEnd = SkipDigits(text.data(), end);
    const char* leading = std::find_if(text.data(), integerEnd, [](char c) { return c != '0'; });
    std::int64_t place = integerEnd - leading;
    const char* mantissaEnd = integerEnd;
    if (integerEnd != end && *integerEnd == '.') {
        mantissaEnd = SkipDigits(integerEnd + 1, end);
        if (place == 0) {
            leading = std::find_if(integerEnd + 1, mantissaEnd, [](char c) { return c != '0'; });
            place = integerEnd + 1 - leading;
        }
    }
    std::int64_t exponent;
    ReadExponent(mantissaEnd, end, 'e', exponent);
    return place + exponent > 0 ? std::numeric_limits<double>::infinity() : 0.0;
}

/// The value of a decimal number without a sign.
double Rounded(std::string_view text) {
    double value = 0;
    const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc::result_out_of_range ? BeyondRange(text) : value;
}

#else

/// The value of a decimal number without a sign.
double Rounded(std::string_view text) {
    const std::size_t mantissa = std::min(text.find_first_of("eE"), text.size());
    std::int64_t exponent;
    ReadExponent(text.data() + mantissa, text.data() + text.size(), 'e', exponent);
    return ExactDecimal(text.substr(0, mantissa), exponent);
}

#endif

/// Every reader below takes the text without a sign and returns the place after the number, or null without one.
const char* ReadDecimal(const char* p, const char* end, double& value) {
    const char* q = SkipDigits(p, end);
    auto digits = q - p;
    if (q != end && *q == '.') {
        const char* const fraction = q + 1;
        q = SkipDigits(fraction, end);
        digits += q - fraction;
    }
    if (digits == 0) return nullptr;
    std::int64_t exponent;
    q = ReadExponent(q, end, 'e', exponent);
    value = Rounded({p, static_cast<std::size_t>(q - p)});
    return q;
}

const char* ReadHexadecimal(const char* p, const char* end, double& value) {
    if (end - p < 3 || *p != '0' || ToLower(p[1]) != 'x') return nullptr;
    std::uint64_t mantissa = 0;
    std::int64_t exponent = 0;
    bool sticky = false;
    bool any = false;
    bool fraction = false;
    const char* q = p + 2;
    for (; q != end; ++q) {
        const int digit = HexDigit(*q);
        if (digit < 0 && (*q != '.' || fraction)) break;
        if (digit < 0) {
            fraction = true;
            continue;
        }
        any = true;
        if (mantissa >> 60U == 0) {
            mantissa = mantissa << 4U | static_cast<std::uint64_t>(digit);
            exponent -= fraction ? 4 : 0;
        } else {
            sticky = sticky || digit != 0;
            exponent += fraction ? 0 : 4;
        }
    }
    if (!any) return nullptr;
    std::int64_t written;
    q = ReadExponent(q, end, 'p', written);
    value = RoundBinary(mantissa, exponent + written, sticky);
    return q;
}

/// The payload that the text between the brackets of nan(...) stands for: an integer as C writes it, or else none.
std::uint64_t NanPayload(const char* p, const char* end) {
    constexpr std::uint64_t payloadBits = (std::uint64_t{1} << 51U) - 1U;
    int base = 10;
    if (end - p > 2 && *p == '0' && ToLower(p[1]) == 'x') {
        base = 16;
        p += 2;
    } else if (end - p > 1 && *p == '0') {
        base = 8;
    }
    std::uint64_t payload = 0;
    const auto [rest, error] = std::from_chars(p, end, payload, base);
    if (rest != end) return 0;
    return error == std::errc::result_out_of_range ? payloadBits : payload & payloadBits;
}

const char* ReadNan(const char* p, const char* end, double& value) {
    constexpr std::uint64_t quietNan = 0x7FF8000000000000U;
    if (!StartsWith(p, end, "nan")) return nullptr;
    p += 3;
    std::uint64_t payload = 0;
    if (p != end && *p == '(') {
        const char* const close = std::find_if_not(p + 1, end, IsPayload);
        if (close != end && *close == ')') {
            payload = NanPayload(p + 1, close);
            p = close + 1;
        }
    }
    value = std::bit_cast<double>(quietNan | payload);
    return p;
}

const char* ReadInfinity(const char* p, const char* end, double& value) {
    if (!StartsWith(p, end, "inf")) return nullptr;
    value = std::numeric_limits<double>::infinity();
    return p + (StartsWith(p, end, "infinity") ? 8 : 3);
}

const char* ReadGeneral(const char* p, const char* end, double& value) {
    for (const auto read : {ReadHexadecimal, ReadDecimal, ReadInfinity, ReadNan}) {
        if (const char* const stop = read(p, end, value)) return stop;
    }
    return nullptr;
}

/// Where there is no sign, `negative` is false and the place stays.
const char* SkipSign(const char* p, const char* end, bool& negative) {
    negative = p != end && *p == '-';
    return p != end && (*p == '-' || *p == '+') ? p + 1 : p;
}

}  // namespace

double DecimalValue(std::string_view text) {
    std::array<char, 48> padded{};
    double value;
    if (text.size() + sizeof(std::uint64_t) < padded.size()) {
        std::copy(text.begin(), text.end(), padded.begin());
        if (FastDecimal(padded.data(), value) == padded.data() + text.size()) return value;
    }
    bool negative;
    const char* const end = text.data() + text.size();
    const char* const p = SkipSign(text.data(), end, negative);
    value = Rounded({p, static_cast<std::size_t>(end - p)});
    return negative ? -value : value;
}

const char* ParseAnyNumber(const char* p, const char* end, double& value) {
    const char* q = p;
    while (q != end && IsSpace(*q)) ++q;
    const char* stop = FastDecimal(q, value);
    if (stop != nullptr && ToLower(*stop) != 'x') return stop;
    bool negative;
    q = SkipSign(q, end, negative);
    stop = ReadGeneral(q, end, value);
    if (stop == nullptr) {
        value = 0;
        return p;
    }
    if (negative) value = -value;
    return stop;
}

}  // namespace orvalo
