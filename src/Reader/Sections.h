#pragma once

#include <cstdint>

#include <Orvalo3DReader/Model/Model.h>

#include "Reader/ReaderCore.h"
#include "Reader/WordList.h"

/// The sections of a model file, and their grammars, one source file each.
namespace orvalo {

/// What is read into, and how.
struct ModelReading {
    Model& model;
    /// Whether samples of tables are stored as doubles.
    bool doublePrecision = true;
    /// Whether cells keep the material numbers written in the file, because no materials were read.
    bool cubesOnly = false;
    /// Where the number of cubes read so far is stored, or null.
    unsigned long long* progress = nullptr;
};

/// A grammar is called with the current token on the section's name and returns with it on the section's closing END.
/// What the section defines is then in the model; a section that is switched off leaves nothing there.
using SectionGrammar = void (*)(ReaderCore& core, const ModelReading& reading);

void ReadAnalysisSection(ReaderCore& core, const ModelReading& reading);
void ReadMaterialsSection(ReaderCore& core, const ModelReading& reading);
void ReadCubesSection(ReaderCore& core, const ModelReading& reading);
void ReadActuatorSection(ReaderCore& core, const ModelReading& reading);
void ReadPiezoSection(ReaderCore& core, const ModelReading& reading);
void ReadSensorSection(ReaderCore& core, const ModelReading& reading);
void ReadDumpSection(ReaderCore& core, const ModelReading& reading);
void ReadTableSection(ReaderCore& core, const ModelReading& reading);
void ReadSetSection(ReaderCore& core, const ModelReading& reading);
void ReadDampingSection(ReaderCore& core, const ModelReading& reading);

/// Reads a table from the token of its name on: the one of a section, or one of a piezo patch.
void ReadTable(ReaderCore& core, Table& table, bool doublePrecision);

/// The words that may stand in a section where a property may.
WordList AnalysisWords();
WordList MaterialsWords();
WordList CubesWords();
WordList ActuatorWords();
WordList PiezoWords();
WordList SensorWords();
WordList DumpWords();
WordList TableWords();
WordList SetWords();
WordList DampingWords();

/// Where a section may stand. The first three come first, in this order, and once.
enum class SectionOrder : std::uint8_t { Analysis, Materials, Cubes, Any };

/// All that is to be said of a section but its grammar.
struct Section {
    std::string_view word;
    /// As messages show it.
    const char* name;
    SectionOrder order;
    /// Whether it is read where nothing but the cubes is.
    bool grid;
    SectionGrammar read;
    WordList (*words)();
};

inline constexpr Section sections[] = {
    {"analysis", "ANALYSIS", SectionOrder::Analysis, false, ReadAnalysisSection, AnalysisWords},
    {"materials", "MATERIALS", SectionOrder::Materials, false, ReadMaterialsSection, MaterialsWords},
    {"cubes", "CUBES", SectionOrder::Cubes, true, ReadCubesSection, CubesWords},
    {"actuator", "ACTUATOR", SectionOrder::Any, false, ReadActuatorSection, ActuatorWords},
    {"piezo", "PIEZO", SectionOrder::Any, false, ReadPiezoSection, PiezoWords},
    {"sensor", "SENSOR", SectionOrder::Any, false, ReadSensorSection, SensorWords},
    {"dump", "DUMP", SectionOrder::Any, false, ReadDumpSection, DumpWords},
    {"table", "TABLE", SectionOrder::Any, false, ReadTableSection, TableWords},
    {"set", "SET", SectionOrder::Any, false, ReadSetSection, SetWords},
    {"damping", "DAMPING", SectionOrder::Any, true, ReadDampingSection, DampingWords},
};
static_assert(HasWords(sections));

}  // namespace orvalo
