#pragma once

#include <map>
#include <memory>
#include <vector>

#include <Orvalo3DReader/Export.h>
#include <Orvalo3DReader/Model/Actuator.h>
#include <Orvalo3DReader/Model/Bounds.h>
#include <Orvalo3DReader/Model/Cubes.h>
#include <Orvalo3DReader/Model/Dump.h>
#include <Orvalo3DReader/Model/MaterialRepository.h>
#include <Orvalo3DReader/Model/Piezo.h>
#include <Orvalo3DReader/Model/Sensor.h>
#include <Orvalo3DReader/Model/Set.h>
#include <Orvalo3DReader/Model/Table.h>

namespace orvalo {

/// All that a model input file says. Create one, hand it to Reader::Execute and read its members.
///
/// Copies share cube buffers, tables, sets and piezo patches with their source; the last copy releases them.
class Model {
public:
    /// Edge length of a cube, in the input file's unit of length.
    double cellSize = 0.0;
    /// In seconds.
    double timeStep = 0.0;
    /// In seconds.
    double startTime = 0.0;
    /// Degrees Celsius: the temperature of cells of temperature-dependent materials that have none of their own.
    double roomTemperature = 25.0;
    /// "Air" and what the MATERIALS section defines.
    MaterialRepository materials;
    /// The box of all cubes and damping cubes.
    Bounds bounds;
    /// The grid, its temperatures and the damping cubes.
    Cubes cubes;
    /// In file order; disabled ones are left out, as for all that follows.
    std::vector<Actuator> actuators;
    /// In file order.
    std::vector<std::shared_ptr<Piezo>> piezos;
    /// By ID.
    std::map<int, Sensor> sensors;
    /// By ID.
    std::map<int, Dump> dumps;
    /// By ID: positive from TABLE sections, negative for generated ones.
    std::map<int, std::shared_ptr<Table>> tables;
    /// Every table ID that an actuator names or a TABLE section defines, with 1 once it was found to be defined.
    std::map<int, int> requiredTables;
    /// By ID.
    std::map<int, std::shared_ptr<Set>> sets;
};

}  // namespace orvalo
