#pragma once

#include <cstdint>
#include <string_view>

namespace orvalo {

/// The double nearest to `mantissa` * 2^`exponent`, plus a little where `sticky`; of two the even one.
double RoundBinary(std::uint64_t mantissa, std::int64_t exponent, bool sticky);

/// The double nearest to digits with or without a point in them, times ten to the power of `exponent`. For standard
/// libraries that convert numbers only as the locale of the process says.
double ExactDecimal(std::string_view digits, std::int64_t exponent);

}  // namespace orvalo
