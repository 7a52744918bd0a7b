#pragma once

#include "Reader/ReaderCore.h"

namespace orvalo {

/// Reads the `start` of an actuator or piezo patch: microseconds, not below 0, as a negated count of time steps of
/// `timeStep` seconds. A start that is not a number after the division counts as 0. Throws InvalidPropertyValue also
/// for a start beyond 32 bits of steps in either direction.
int ReadStartSteps(const ReaderCore& core, double timeStep);

}  // namespace orvalo
