#pragma once

#include <Orvalo3DReader/Model/Point.h>

namespace orvalo {

/// The head of everything in a model that has an ID: actuators, piezo patches, sensors and dumps.
struct SharedProperties {
    /// The ID given in the input file; -1 when none was given.
    int id = -1;
    /// The cube at which the object sits.
    Point position;
};

}  // namespace orvalo
