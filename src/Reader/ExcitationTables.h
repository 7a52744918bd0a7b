#pragma once

#include <Orvalo3DReader/Model/Model.h>

#include "Common/StopFlag.h"
#include "Reader/ReaderCore.h"

namespace orvalo {

/// Files a table made from the waveform of every actuator that names none, under IDs from -1 down, with up to so many
/// threads. Throws OutOfMemory and, as all here, Stopped.
void GenerateTables(Model& model, bool doublePrecision, StopFlag stop, unsigned int threads);

/// Points every actuator at its table; each ID must be in the model.
void AssignTables(Model& model, StopFlag stop);

/// Throws what GenerateTables would, without making the samples.
void CheckGeneratedTables(ReaderCore& core, const Model& model);

}  // namespace orvalo
