#pragma once

#include <cstddef>
#include <map>
#include <memory>

#include <Orvalo3DReader/Export.h>
#include <Orvalo3DReader/Model/PiezoData.h>
#include <Orvalo3DReader/Model/SharedProperties.h>
#include <Orvalo3DReader/Model/Table.h>

namespace orvalo {

/// A piezoelectric patch: many points of a plane, each driven by up to three of the patch's own tables.
struct Piezo {
    /// ID and place.
    SharedProperties shared;
    /// The axis of the patch: (1, 0, 0), (0, 1, 0) or (0, 0, 1).
    Point direction;
    /// The start as a negated count of time steps.
    int start = 0;
    /// The number of samples that every table of the patch has; 0 without tables.
    std::size_t samplesCount = 0;
    /// Factor for the samples.
    double amplitude = 1.0;
    /// The points of the patch.
    PiezoData data;
    /// An ActuatorMethod.
    int method = 0;
    /// The tables defined inside the section, by ID.
    std::map<int, std::shared_ptr<Table>> tables;
    /// Every table ID that a point names or the section defines, with 1 once it was found to be defined.
    std::map<int, int> usedTables;
};

}  // namespace orvalo
