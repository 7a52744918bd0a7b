#pragma once

#include "Common/Raise.h"
#include "Reader/ReaderCore.h"

namespace orvalo {

struct Shape {
    std::string_view word;
};
inline constexpr Shape shapes[] = {{"point"}};

/// Checks the `shape` of an actuator or sensor. Throws ShapePointSupported for anything but `point`.
inline void CheckPointShape(const ReaderCore& core) {
    core.expected = shapes;
    if (!core.IsKeyword(shapes[0].word)) ORVALO_RAISE(ActuatorReader, ReaderMessages::ShapePointSupported);
}

}  // namespace orvalo
