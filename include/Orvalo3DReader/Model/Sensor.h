#pragma once

#include <string>

#include <Orvalo3DReader/Model/FileProperties.h>
#include <Orvalo3DReader/Model/SharedProperties.h>

namespace orvalo {

/// An output that records chosen components at one cube.
struct Sensor {
    /// ID and place.
    SharedProperties shared;
    /// One letter per component, in the order written: u, v, w, m (magnitude).
    std::string output;
    /// Where and how it is written.
    FileProperties file;
};

}  // namespace orvalo
