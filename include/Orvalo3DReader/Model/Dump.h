#pragma once

#include <string>

#include <Orvalo3DReader/Model/FileProperties.h>
#include <Orvalo3DReader/Model/SharedProperties.h>

namespace orvalo {

/// An output that records components of the whole field. It has no place: `shared.position` stays zero.
struct Dump {
    /// ID and the unused place.
    SharedProperties shared;
    /// Two characters per component, in the order written: u0, v0, w0, u1, v1, w1, u2, v2, w2.
    std::string output;
    /// Where and how it is written.
    FileProperties file;
};

}  // namespace orvalo
