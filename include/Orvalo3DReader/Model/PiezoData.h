#pragma once

#include <cstddef>
#include <deque>
#include <map>
#include <memory>

#include <Orvalo3DReader/Export.h>

namespace orvalo {

/// The points of a piezo patch in the plane of the patch.
///
/// Copies share the cells; the last copy releases them.
class ORVALO3DREADER_EXPORT PiezoData {
public:
    /// A point of the patch and the tables that drive its three components; table ID 0 marks an interpolated point.
    /// Ten bytes, no padding.
    struct Cell {
        /// A point at (cellX, cellY) driven by the tables u, v and w.
        Cell(short cellX, short cellY, unsigned short u, unsigned short v, unsigned short w)
            : x(cellX), y(cellY), tableU(u), tableV(v), tableW(w) {}

        short x;                ///< In the plane of the patch.
        short y;                ///< In the plane of the patch.
        unsigned short tableU;  ///< Drives u.
        unsigned short tableV;  ///< Drives v.
        unsigned short tableW;  ///< Drives w.
    };

    /// Adds a point driven by the tables u, v and w, or an interpolated one if all of them are 0. Throws
    /// PiezoPointDuplicated for a position that is taken, leaving the cells unchanged, and OutOfMemory.
    void Add(short x, short y, unsigned short tableU, unsigned short tableV, unsigned short tableW);
    /// The number of points that the section declared, which the number of cells need not equal; 0 where they come from
    /// no file.
    std::size_t Count() const { return count_; }
    /// The cells by ascending key: by y, then by x, both compared as unsigned 16-bit patterns. The map and the cells
    /// are owned by this object and its copies.
    const std::map<unsigned int, Cell*>& Cells() const { return cells_; }

private:
    friend class ModelAccess;

    /// y in the high 16 bits, x in the low 16 bits.
    static unsigned int Key(short x, short y);

    std::map<unsigned int, Cell*> cells_;
    std::size_t count_ = 0;
    // A deque never moves its elements, so the map can point into it.
    std::shared_ptr<std::deque<Cell>> storage_;
};

static_assert(sizeof(PiezoData::Cell) == 10, "clients rely on the size of a cell");

}  // namespace orvalo
