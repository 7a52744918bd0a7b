#pragma once

#include <optional>

namespace orvalo {

/// The number that `value` rounds to with so many decimal digits.
double RoundedTo(int digits, double value);

/// The microseconds with the fewest digits that are read back as that many seconds, or nothing: of every hundred
/// numbers of seconds some are none of microseconds.
std::optional<double> Microseconds(double seconds);

/// Microseconds that a start after so many time steps can be written as, with few digits, or nothing.
std::optional<double> StartMicroseconds(int steps, double timeStep);

}  // namespace orvalo
