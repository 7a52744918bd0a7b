#pragma once

#include <cstddef>

#include <Orvalo3DReader/Model/Cubes.h>
#include <Orvalo3DReader/Model/PiezoData.h>
#include <Orvalo3DReader/Model/Table.h>

namespace orvalo {

/// How the reader fills the model classes; its key to what programs that fill them have no use for.
class ModelAccess {
public:
    static void AllocCubes(Cubes& cubes, std::size_t count, bool withTemperatures) {
        cubes.AllocCubes(count, withTemperatures);
    }
    static void AllocDampingCubes(Cubes& cubes, std::size_t count) { cubes.AllocDampingCubes(count); }
    static void Allocate(Table& table, bool asDoubles) { table.Allocate(asDoubles); }
    static void SetCount(PiezoData& data, std::size_t count) { data.count_ = count; }
    static void Add(PiezoData& data, const PiezoData::Cell& cell) {
        data.Add(cell.x, cell.y, cell.tableU, cell.tableV, cell.tableW);
    }
};

}  // namespace orvalo
