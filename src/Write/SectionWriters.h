#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>

#include <Orvalo3DReader/Model/Model.h>

#include "Common/StopFlag.h"
#include "Write/SectionText.h"

/// The writers of the sections. Each has a function that refuses what would not be read back as it is, and one that
/// writes what was not refused.
namespace orvalo {

/// How many rows of the grid are written: without those at the end that are all zero.
struct GridRows {
    std::size_t cubes = 0;
    std::size_t dampingCubes = 0;
};
GridRows CheckGrid(const Model& model, StopFlag stop);
/// CUBES, and DAMPING if there is any.
void WriteGrid(const Model& model, const GridRows& rows, SectionText& text);
void CheckSets(const Model& model, StopFlag stop);
void WriteSets(const Model& model, SectionText& text);

void CheckAnalysis(const Model& model);
void WriteAnalysis(const Model& model, SectionText& text);
void CheckMaterials(const MaterialRepository& materials);
void WriteMaterials(const MaterialRepository& materials, SectionText& text);
void CheckActuators(const Model& model);
void WriteActuators(const Model& model, SectionText& text);
void CheckPiezos(const Model& model, StopFlag stop);
void WritePiezos(const Model& model, SectionText& text);
void CheckOutputs(const Model& model);
void WriteOutputs(const Model& model, SectionText& text);

/// Tables, those of a model or those of a patch. Generated ones are passed over.
using Tables = std::map<int, std::shared_ptr<Table>>;
void CheckTables(const char* kind, const Tables& tables, StopFlag stop);
/// A table, from its word on.
void WriteTable(int id, const Table& table, SectionText& text);
void WriteTables(const Model& model, SectionText& text);

/// Rows and samples of the model, for the progress of writing.
std::uint64_t CountUnits(const Model& model, const GridRows& rows);

/// Refuses a start that the reader does not give.
void CheckStart(const Subject& subject, int start, double timeStep);
/// Writes the start, unless it is 0.
void WriteStart(int start, double timeStep, SectionText& text);

}  // namespace orvalo
