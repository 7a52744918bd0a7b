#pragma once

#include <string>

#include <Orvalo3DReader/Model/Model.h>

#include "export/ExportOptions.h"
#include "results/ResultsSelection.h"

/// Writes the actuators, piezo points and sensors of a model as VTK points with names, in the middle of their cubes.
/// How a patch lies around its position is up to the solver: here its coordinates run along the two axes across its
/// own, in the order x, y, z, from its position on.
void WriteVtkPoints(const orvalo::Model& model, const std::string& path, const ExportOptions& options);

/// Writes rows as VTK points in the middle of their cubes.
void WriteVtkPoints(const ResultsSelection& selection, const std::string& path, const ExportOptions& options);
