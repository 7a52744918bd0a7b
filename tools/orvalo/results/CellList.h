#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include <Orvalo3DReader/Model/Point.h>

#include "results/ResultsTable.h"

/// What is wrong with how cells were asked for.
class CellListError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Coordinates from the first to the last along each axis, both included.
struct CellBox {
    int first[3] = {-32768, -32768, -32768};
    int last[3] = {32767, 32767, 32767};

    bool Contains(const orvalo::Point& cell) const {
        return first[0] <= cell.x && cell.x <= last[0] && first[1] <= cell.y && cell.y <= last[1] &&
               first[2] <= cell.z && cell.z <= last[2];
    }
};

/// Reads "x0:x1,y0:y1,z0:z1". A bound may be missing, and a single coordinate stands for both. Throws CellListError.
CellBox ParseCellBox(const std::string& text);

/// The cells of a text with x, y and z on each line, between blanks, tabs or commas; what follows them, lines without
/// anything and lines that begin with # or a letter do not count. Throws CellListError.
std::vector<orvalo::Point> ReadCells(const std::string& path, const std::string& shownName);

/// Rows with cells in a box, in the order of the file.
std::vector<unsigned int> RowsIn(const ResultsTable& table, const CellBox& box);

/// The rows of cells, in the order of the cells, and which cells have none. Of several rows for a cell the last counts.
struct FoundRows {
    std::vector<unsigned int> rows;
    std::vector<orvalo::Point> missing;
};
FoundRows RowsOf(const ResultsTable& table, const std::vector<orvalo::Point>& cells);
