#pragma once

#include <Orvalo3DReader/Model/Model.h>

#include "Common/StopFlag.h"

namespace orvalo {

/// Throws ActuatorPiezoNotDefined for a model that nothing excites and SensorDumpNotDefined for one that records
/// nothing.
void CheckExcitationAndOutput(const Model& model);

/// Checks that every table that a piezo patch or an actuator names is defined: those of a patch within the patch, those
/// of actuators in the model. Marks what it found. Throws PiezoTableMissing, TableMissing and
/// Stopped.
void CheckRequiredTables(Model& model, StopFlag stop);

}  // namespace orvalo
