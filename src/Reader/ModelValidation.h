#pragma once

#include <Orvalo3DReader/Model/Model.h>

#include "Reader/ReaderCore.h"

namespace orvalo {

/// Throws ActuatorPiezoNotDefined for a model that nothing excites.
void CheckExcitation(const Model& model);

/// Throws SensorDumpNotDefined for a model of which nothing is recorded.
void CheckOutput(const Model& model);

/// Checks that every table that a piezo patch or an actuator names is defined: those of a patch within the patch, those
/// of actuators in the model. Marks what it found. Throws PiezoTableMissing, TableMissing and Stopped.
void CheckRequiredTables(ReaderCore& core, Model& model);

}  // namespace orvalo
