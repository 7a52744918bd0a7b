#pragma once

#include <string>

#include <Orvalo3DReader/Model/FileProperties.h>
#include <Orvalo3DReader/Model/SharedProperties.h>

namespace orvalo {

/// An output that records chosen components at one cube.
struct Sensor {
    SharedProperties shared;
    /// One letter per component, in the order written: u, v, w, m (magnitude).
    std::string output;
    FileProperties file;
};

}  // namespace orvalo
