#pragma once

#include <Orvalo3DReader/Model/Model.h>

#include "Reader/ReaderCore.h"

namespace orvalo {

/// Files a table made from the waveform of every actuator that names none, under IDs from -1 down. Throws OutOfMemory.
void GenerateTables(Model& model, bool doublePrecision);

/// Points every actuator at its table; each ID must be in the model.
void AssignTables(Model& model);

/// Throws what GenerateTables would, without making the samples.
void CheckGeneratedTables(ReaderCore& core, const Model& model);

}  // namespace orvalo
