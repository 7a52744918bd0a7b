#pragma once

#include <cstddef>
#include <functional>
#include <string>

#include "export/GridRegion.h"
#include "export/SortedCells.h"

/// The cells of a box as runs: cells without anything before it, cells that are alike, and the code of these; as whole
/// numbers of seven bits a byte, the lowest first. Runs go on from row to row.
std::string EncodeRuns(const SortedCells& cells, const GridRegion& box,
                       const std::function<unsigned int(std::size_t)>& codeOf);

/// A row of the file for each cell, from 1, as the distance from where the two before it lead.
std::string EncodeRows(const SortedCells& cells);
