#pragma once

#include <string>

#include <Orvalo3DReader/Model/Model.h>

#include "export/ExportOptions.h"

/// Writes a model as JSON: what `orvalo info` tells of it, with samples, points of patches and positions of sets, and
/// on request with the rows of the grid, each as [x, y, z, material] or with a temperature or coefficient after them.
void WriteModelJson(const orvalo::Model& model, const std::string& path, const ExportOptions& options);
