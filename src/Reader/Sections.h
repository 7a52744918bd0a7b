#pragma once

#include <Orvalo3DReader/Model/Model.h>

#include "Reader/ReaderCore.h"

/// The grammars of the sections, one source file each.
///
/// Each is called with the current token on the section's name and returns with it on the section's closing END. Those
/// that fill a record of their own return whether it is enabled; a disabled record is to be discarded.
namespace orvalo {

/// What the CUBES and DAMPING sections need to know beyond the model.
struct GridReading {
    /// Whether cells keep the material numbers written in the file, because no materials were read.
    bool cubesOnly = false;
    /// Where the number of cubes read so far is stored, or null.
    unsigned long long* progress = nullptr;
};

void ReadAnalysisSection(ReaderCore& core, Model& model);
void ReadMaterialsSection(ReaderCore& core, MaterialRepository& materials);
void ReadCubesSection(ReaderCore& core, Model& model, const GridReading& reading);
void ReadDampingSection(ReaderCore& core, Model& model, const GridReading& reading);
bool ReadActuatorSection(ReaderCore& core, Actuator& actuator, Model& model);
bool ReadPiezoSection(ReaderCore& core, Piezo& piezo, const Model& model, bool doublePrecision);
bool ReadSensorSection(ReaderCore& core, Sensor& sensor);
bool ReadDumpSection(ReaderCore& core, Dump& dump);
void ReadTableSection(ReaderCore& core, Table& table, bool doublePrecision);
/// Files the set in the model itself.
void ReadSetSection(ReaderCore& core, Model& model);

}  // namespace orvalo
