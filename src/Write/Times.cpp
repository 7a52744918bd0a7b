#include "Write/Times.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "Common/ParseNumber.h"
#include "Write/ShortestDecimal.h"

namespace orvalo {

namespace {

/// As the reader does.
double ToSeconds(double microseconds) {
    return microseconds * 1e-6;
}

bool SameBits(double a, double b) {
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

std::ptrdiff_t Length(double value) {
    char text[decimalRoom];
    return WriteDecimal(text, value) - text;
}

/// Of the doubles near `about` that `serves` takes, the one with the shortest decimal; or nothing. Decimals of up to 15
/// digits are so far apart that only the nearest one can serve.
template <class Serves>
std::optional<double> Shortest(double about, const Serves& serves) {
    for (int digits = 1; digits <= std::numeric_limits<double>::digits10; ++digits) {
        if (const double rounded = RoundedTo(digits, about); serves(rounded)) return rounded;
    }
    constexpr int neighbours = 8;
    std::optional<double> shortest;
    double candidate = about;
    for (int i = 0; i < neighbours; ++i) candidate = std::nextafter(candidate, 0.0);
    for (int i = 0; i <= 2 * neighbours; ++i) {
        if (serves(candidate) && (!shortest || Length(candidate) < Length(*shortest))) shortest = candidate;
        candidate = std::nextafter(candidate, std::numeric_limits<double>::infinity());
    }
    return shortest;
}

}  // namespace

double RoundedTo(int digits, double value) {
    if (!std::isfinite(value)) return value;
    char text[64];
    const char* const end =
        std::to_chars(text, text + sizeof text, value, std::chars_format::scientific, digits - 1).ptr;
    const double rounded = DecimalValue({text, end});
    // Rounded up, the greatest numbers are beyond every double.
    return std::isfinite(rounded) ? rounded : value;
}

std::optional<double> Microseconds(double seconds) {
    const auto serves = [&](double microseconds) { return SameBits(ToSeconds(microseconds), seconds); };
    if (serves(seconds)) return seconds;  // 0, -0 and infinity
    return Shortest(seconds / 1e-6, serves);
}

std::optional<double> StartMicroseconds(int steps, double timeStep) {
    if (steps == 0) return 0.0;
    // What was written is rounded up to a step, so the step itself is what is meant. But the quotient of a start and a
    // step may come out a little above the whole number that it is, and then the decimal below it has to do.
    constexpr double tolerance = 0.01;
    const double step = timeStep * 1e6;
    const double about = std::min(steps * step, std::numeric_limits<double>::max());
    const auto serves = [&](double start) { return std::ceil(start / step) == steps; };
    for (int digits = 1; digits <= std::numeric_limits<double>::digits10; ++digits) {
        const double unit = std::pow(10.0, std::floor(std::log10(about)) + 1 - digits);
        for (const double start : {RoundedTo(digits, about), RoundedTo(digits, about - unit)}) {
            if (std::abs(start - about) <= tolerance * step && serves(start)) return start;
        }
    }
    return Shortest(about, serves);
}

}  // namespace orvalo
