#pragma once

#include "Common/Raise.h"
#include "Reader/ReaderCore.h"

namespace orvalo {

/// Checks the `shape` of an actuator or sensor. Throws ShapePointSupported for anything but `point`.
inline void CheckPointShape(const ReaderCore& core) {
    if (!core.IsKeyword("point")) ORVALO_RAISE(ActuatorReader, ReaderMessages::ShapePointSupported);
}

}  // namespace orvalo
