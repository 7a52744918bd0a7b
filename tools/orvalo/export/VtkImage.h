#pragma once

#include <string>

#include "export/CellData.h"
#include "export/ExportOptions.h"

/// Writes the whole box of cells as VTK image data, of which the extents are the coordinates of the cubes.
void WriteVtkImage(const CellData& data, const std::string& path, const ExportOptions& options,
                   ExportProgress& progress);

/// Writes it cut into pieces, each in a file beside `path`, several at once.
void WriteVtkPieces(const CellData& data, const std::string& path, const ExportOptions& options,
                    ExportProgress& progress);
