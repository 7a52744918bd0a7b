#pragma once

#include <string>

#include "export/CellData.h"
#include "export/ExportOptions.h"

/// Writes the cells that exist, and only these, as a VTK unstructured grid of voxels that share their corners.
void WriteVtkCells(const CellData& data, const std::string& path, const ExportOptions& options,
                   ExportProgress& progress);
